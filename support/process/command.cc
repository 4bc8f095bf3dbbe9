#include "support/process/command.h"

#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <string>

#include "support/process/blocked_signals.h"
#include "support/system/descriptor.h"

namespace {

constexpr size_t kLongestPiece = 511;

// Standard input holds the administrator's next answers, and complaints do not belong on the screen. A Ctrl-C
// reaches the whole foreground group and must not end a probe.
const SString kSurroundings = "trap '' HUP INT QUIT TERM; exec </dev/null 2>/dev/null\n";

/// Gives the programs that are started in a scope an environment of their own. The caller's could change what
/// they print: PS_FORMAT and COLUMNS do for ps, TCPDIAG_FILE for ss, LD_PRELOAD for any.
class OwnEnvironment {
  public:
    OwnEnvironment() : before_(environ) { environ = variables_.data(); }
    ~OwnEnvironment() { environ = before_; }
    OwnEnvironment(const OwnEnvironment&) = delete;
    OwnEnvironment& operator=(const OwnEnvironment&) = delete;

  private:
    std::string path_ = "PATH=/usr/sbin:/usr/bin:/sbin:/bin";
    std::string locale_ = "LC_ALL=C.UTF-8";
    std::array<char*, 3> variables_ = {path_.data(), locale_.data(), nullptr};
    char** before_;
};

FILE* Start(const SString& command) {
    // The child survives the terminal's signals until it ignores them itself; this process gets them
    // afterwards.
    const BlockedSignals terminal(kTerminalSignals);
    const OwnEnvironment own;
    return popen((kSurroundings + command).CString(), "re");
}

/// Like fgets with a buffer of 512 bytes, but a NUL does not hide the rest of the line.
SString ReadPiece(FILE* stream) {
    std::string piece;
    while (piece.size() < kLongestPiece && !piece.ends_with('\n')) {
        const int c = getc(stream);
        if (c == EOF) break;
        piece += static_cast<char>(c);
    }
    return SString(std::move(piece));
}

}  // namespace

SStringList ReadCommand(const SString& command) {
    SStringList pieces;
    KeepFromChildren();
    FILE* stream = Start(command);
    if (stream == nullptr) return pieces;
    for (SString piece = ReadPiece(stream); !piece.IsEmpty(); piece = ReadPiece(stream)) pieces.Push(piece);
    pclose(stream);
    return pieces;
}

SString WithTimeLimit(const SString& command, std::chrono::seconds limit) {
    return "timeout --signal=KILL " + SString(limit.count()) + " " + command;
}

SStringList ReadMailq() {
    return ReadCommand("/usr/lib/sendmail -bp");
}
