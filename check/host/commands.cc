// Runs them with a time limit of their own, so that one that hangs does not take the rest of a look with it.
#include "check/host/commands.h"

#include <unistd.h>

#include <algorithm>

#include "support/process/command.h"
#include "support/system/identity.h"

namespace {

constexpr std::chrono::seconds kPatience{20};

}  // namespace

bool HasCommand(const SString& name) {
    const SStringList folders = {"/usr/sbin/", "/usr/bin/", "/sbin/", "/bin/"};
    return std::ranges::any_of(
        folders, [&](const SString& folder) { return access((folder + name).CString(), X_OK) == 0; });
}

SStringList LinesOf(const SString& command) {
    const AsRoot root;
    SStringList lines = ReadCommand(WithTimeLimit(command, kPatience));
    for (SString& line : lines) line.ChopLineEnd();
    return lines;
}
