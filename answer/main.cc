// Answer FILE
//
// Runs the Install that lies beside it and answers its questions by their text. The exit status is Install's;
// 4 where a question had no answer; 64, with Install not run, for a wrong file or wrong usage.
//
// Answer --questions prints the questions that there are, as a file to be filled in.
#include <sys/prctl.h>
#include <unistd.h>

#include <iostream>

#include "answer/keys.h"
#include "answer/session.h"
#include "install/process_state.h"
#include "support/system/file.h"

namespace {

constexpr int kComplete = 0;
constexpr int kMisused = 64;

/// By the program's own place, whatever it was called as.
SString Install() {
    const SString self = RealPath("/proc/self/exe");
    return self.IsEmpty() ? self : self.S("[^/]*$", "Install");
}

int Refuse(const SString& reason) {
    std::cerr << reason << "\n";
    return kMisused;
}

int Run(const SString& path) {
    AnswerFile file = ReadAnswerFile(path);
    if (!file.errors.IsEmpty()) return Refuse(file.errors.Join("\n"));
    const SString install = Install();
    if (install.IsEmpty()) return Refuse("Answer: cannot tell where it lies, as /proc is not mounted");
    if (access(install.CString(), X_OK) != 0) return Refuse("Answer: there is no program " + install);
    return Session(path, std::move(file)).Run(install);
}

}  // namespace

int main(int count, char** arguments) {
    SettleProcess();
    prctl(PR_SET_DUMPABLE, 0);  // the password would be in a core
    const SString argument(count == 2 ? arguments[1] : "");
    if (argument == "--questions") {
        std::cout << QuestionsToFillIn() << std::flush;
        return std::cout ? kComplete : kMisused;
    }
    if (argument.IsEmpty() || argument.StartsWith("-")) return Refuse("usage: Answer FILE | --questions");
    return Run(argument);
}
