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

double CpuSeconds() {
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(used.ru_utime) + seconds(used.ru_stime);
}

/// Resets the peak (VmHWM) to the memory in use now.
void ForgetPeak() {
    std::ofstream("/proc/self/clear_refs") << "5";
}

Measurement Measure(const std::function<bool()>& prepare, const std::function<bool()>& work) {
    Measurement measurement;
    const bool is_prepared = prepare();
    ForgetPeak();
    const double before = StatusBytes("VmRSS:");
    const double cpu_before = CpuSeconds();
    const auto start = std::chrono::steady_clock::now();
    measurement.is_done = is_prepared && work();
    const std::chrono::duration<double> duration = std::chrono::steady_clock::now() - start;
    measurement.seconds = duration.count();
    measurement.cpu_seconds = CpuSeconds() - cpu_before;
    measurement.peak_bytes = StatusBytes("VmHWM:") - before;
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
