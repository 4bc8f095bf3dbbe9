#include "support/system/command.h"

#include <array>
#include <csignal>
#include <cstdio>

#include "support/system/descriptor.h"

namespace {

constexpr size_t kLongestPiece = 511;

// Standard input holds the administrator's next answers, and complaints do not belong on the screen. A Ctrl-C
// reaches the whole foreground group and must not end a probe. The variables change which processes and
// columns ps prints.
const SString kSurroundings =
    "trap '' HUP INT QUIT TERM; exec </dev/null 2>/dev/null; "
    "unset COLUMNS LINES PS_FORMAT PS_PERSONALITY CMD_ENV I_WANT_A_BROKEN_PS; "
    "LC_ALL=C.UTF-8; export LC_ALL\n";

constexpr std::array kTerminalSignals = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

/// Blocks the terminal's signals for a scope, so that a child started in it survives them until it ignores
/// them itself. This process gets them afterwards.
class TerminalSignalsBlocked {
  public:
    TerminalSignalsBlocked() {
        sigset_t terminal;
        sigemptyset(&terminal);
        for (const int number : kTerminalSignals) sigaddset(&terminal, number);
        sigprocmask(SIG_BLOCK, &terminal, &before_);
    }
    ~TerminalSignalsBlocked() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
    TerminalSignalsBlocked(const TerminalSignalsBlocked&) = delete;
    TerminalSignalsBlocked& operator=(const TerminalSignalsBlocked&) = delete;

  private:
    sigset_t before_{};
};

FILE* Start(const SString& command) {
    const TerminalSignalsBlocked blocked;
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

SStringList ReadMailq() {
    return ReadCommand("/usr/lib/sendmail -bp");
}
