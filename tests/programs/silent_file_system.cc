// silent_file_system DIRECTORY: mounts a file system (FUSE) there that takes every request without an answer,
// as a file server does that has died: whoever looks at it waits, even under SIGKILL, until this program
// ends. Prints a line when it is mounted.
#include <fcntl.h>
#include <linux/fuse.h>
#include <sys/mount.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <string>

namespace {

constexpr size_t kLargestRequest = 1 << 20;

/// The answer to FUSE_INIT, the first request, without which the kernel would let go of whoever waits.
bool AnswerInit(int device, const fuse_in_header& request) {
    struct {
        fuse_out_header header;
        fuse_init_out init;
    } answer{};
    answer.header = {sizeof answer, 0, request.unique};
    answer.init.major = FUSE_KERNEL_VERSION;
    answer.init.minor = FUSE_KERNEL_MINOR_VERSION;
    answer.init.max_write = 4096;
    return write(device, &answer, sizeof answer) == sizeof answer;
}

bool Mount(int device, const char* directory) {
    const std::string options = "fd=" + std::to_string(device) +
                                ",rootmode=40000,user_id=0,group_id=0,allow_other,default_permissions";
    return mount("silent", directory, "fuse", MS_NOSUID | MS_NODEV, options.c_str()) == 0;
}

}  // namespace

int main(int count, char** arguments) {
    const int device = open("/dev/fuse", O_RDWR | O_CLOEXEC);
    if (count != 2 || device < 0 || !Mount(device, arguments[1])) {
        perror("silent_file_system");
        return 1;
    }
    puts("mounted");
    fflush(stdout);
    static std::array<char, kLargestRequest> request;
    while (read(device, request.data(), request.size()) > 0) {
        fuse_in_header header{};
        std::memcpy(&header, request.data(), sizeof header);
        if (header.opcode == FUSE_INIT && !AnswerInit(device, header)) return 1;
    }
    return 0;
}
