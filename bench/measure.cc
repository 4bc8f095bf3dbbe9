// Measures in a child process, which reports over a pipe.
#include "bench/measure.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iostream>
#include <string>

#include "bench/system_calls.h"
#include "support/system/identity.h"

namespace {

double StatusBytes(const std::string& key) {
    std::ifstream status("/proc/self/status");
    std::string word;
    double kilobytes = 0;
    while (status >> word && word != key) {
    }
    status >> kilobytes;
    return kilobytes * 1024;
}

/// Of this process, and of its children that have ended.
double CpuSeconds() {
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    double sum = 0;
    for (const auto whose : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage used{};
        getrusage(whose, &used);
        sum += seconds(used.ru_utime) + seconds(used.ru_stime);
    }
    return sum;
}

/// The largest child's, of those that have ended; 0 without any.
double PeakOfChildren() {
    rusage used{};
    getrusage(RUSAGE_CHILDREN, &used);
    return static_cast<double>(used.ru_maxrss) * 1024;
}

/// Resets the peak (VmHWM) to the memory in use now.
void ForgetPeak() {
    std::ofstream("/proc/self/clear_refs") << "5";
}

Measurement Measure(const std::function<bool()>& prepare, const std::function<bool()>& work) {
    Measurement measurement;
    const bool is_prepared = prepare();
    const auto calls = [] {
        const AsRoot root;  // the work may be another user's
        return SystemCalls();
    }();
    ForgetPeak();
    const double before = StatusBytes("VmRSS:");
    const double cpu_before = CpuSeconds();
    const auto start = std::chrono::steady_clock::now();
    measurement.is_done = is_prepared && work();
    const std::chrono::duration<double> duration = std::chrono::steady_clock::now() - start;
    measurement.seconds = duration.count();
    measurement.system_calls = calls.Count();
    measurement.cpu_seconds = CpuSeconds() - cpu_before;
    measurement.peak_bytes = StatusBytes("VmHWM:") - before + std::max(0.0, PeakOfChildren() - before);
    return measurement;
}

}  // namespace

Measurement MeasureApart(const std::function<bool()>& prepare, const std::function<bool()>& work) {
    int channel[2];
    Measurement measurement;
    std::cout.flush();
    if (pipe(channel) != 0) return measurement;
    const pid_t child = fork();
    if (child == 0) {
        measurement = Measure(prepare, work);
        _exit(write(channel[1], &measurement, sizeof measurement) == sizeof measurement ? 0 : 1);
    }
    close(channel[1]);
    if (read(channel[0], &measurement, sizeof measurement) != sizeof measurement) measurement = Measurement();
    close(channel[0]);
    waitpid(child, nullptr, 0);
    return measurement;
}

Measurement Median(std::vector<Measurement> measurements) {
    std::ranges::sort(measurements, {}, &Measurement::seconds);
    return measurements[measurements.size() / 2];
}
