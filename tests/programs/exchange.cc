// exchange NAME OTHER
//
// An attacker for scenarios: tries without a pause to exchange the two files, and ends when it has. It makes
// OTHER.ready before it begins.
#include <fcntl.h>
#include <sys/stat.h>

#include <cstdio>

#include "support/text/sstring.h"

namespace {

constexpr int kMisused = 64;

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) return kMisused;
    if (mkdir((SString(argv[2]) + ".ready").CString(), 0700) != 0) return 1;
    while (renameat2(AT_FDCWD, argv[1], AT_FDCWD, argv[2], RENAME_EXCHANGE) != 0) continue;
    return 0;
}
