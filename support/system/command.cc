#include "support/system/command.h"

#include <array>
#include <csignal>
#include <cstdio>

#include "support/system/descriptor.h"

namespace {

constexpr size_t kLongestPiece = 511;

// Standard input may hold the administrator's next answers, and nothing of a probe's complaints belongs on
// the screen. A Ctrl-C reaches the whole foreground group and must not cut a probe short. The variables would
// make ps print other processes or columns, or cut them.
const SString kSurroundings =
    "trap '' HUP INT QUIT TERM; exec </dev/null 2>/dev/null; "
    "unset COLUMNS LINES PS_FORMAT PS_PERSONALITY CMD_ENV I_WANT_A_BROKEN_PS; "
    "LC_ALL=C.UTF-8; export LC_ALL\n";

constexpr std::array kTerminalSignals = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

/// The terminal's signals blocked for a scope: a child started in it is safe from them until it ignores them
/// itself. What comes in the meantime reaches this process afterwards.
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

/// As fgets with a buffer of one byte more, but a NUL byte does not hide the rest of its line.
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
