// Opens the tracepoint at which every system call begins.
#include "bench/system_calls.h"

#include <linux/perf_event.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdint>
#include <fstream>

namespace {

constexpr const char* kTracing = "/sys/kernel/tracing";

uint64_t Tracepoint() {
    uint64_t id = 0;
    std::ifstream(std::string(kTracing) + "/events/raw_syscalls/sys_enter/id") >> id;
    return id;
}

}  // namespace

void SystemCalls::Prepare() {
    if (Tracepoint() != 0 || unshare(CLONE_NEWNS) != 0) return;
    if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return;
    mount("none", kTracing, "tracefs", 0, nullptr);  // where it is refused, Count says so
}

SystemCalls::SystemCalls() {
    perf_event_attr wanted{};
    wanted.size = sizeof wanted;
    wanted.type = PERF_TYPE_TRACEPOINT;
    wanted.config = Tracepoint();
    wanted.inherit = 1;
    if (wanted.config == 0) return;
    event_ =
        Descriptor(static_cast<int>(syscall(SYS_perf_event_open, &wanted, 0, -1, -1, PERF_FLAG_FD_CLOEXEC)));
}

std::optional<double> SystemCalls::Count() const {
    uint64_t count = 0;
    if (!event_ || read(event_.Get(), &count, sizeof count) != sizeof count) return std::nullopt;
    return static_cast<double>(count);
}
