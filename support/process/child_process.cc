// Forks, again if the system is loaded.
#include "support/process/child_process.h"

#include <unistd.h>

namespace {

constexpr unsigned kTries = 5;

}  // namespace

pid_t StartChild(const std::function<void()>& work) {
    for (unsigned wait = 1; wait <= kTries; ++wait) {
        const pid_t child = fork();
        if (child == 0) {
            work();
            _exit(0);  // not exit: the parent's buffers are not the child's to flush
        }
        if (child > 0) return child;
        sleep(wait);
    }
    return -1;
}
