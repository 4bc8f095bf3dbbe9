#include "support/command.h"

#include <csignal>
#include <cstdio>

#include "support/descriptor.h"
#include "support/identity.h"

namespace {

constexpr size_t kLongestPiece = 511;

// Standard input may hold the administrator's next answers, and nothing of a probe's complaints belongs on
// the screen. The variables would make ps print other columns, or cut them.
const SString kSurroundings =
    "exec </dev/null 2>/dev/null; unset COLUMNS LINES PS_FORMAT PS_PERSONALITY CMD_ENV; "
    "LC_ALL=C.UTF-8; export LC_ALL; ";

/// The terminal's signals blocked for a scope. A child started in it keeps them blocked for its life, so that
/// a Ctrl-C, which reaches the whole foreground group, never cuts a probe short.
class TerminalSignalsBlocked {
  public:
    TerminalSignalsBlocked() {
        sigset_t terminal;
        sigemptyset(&terminal);
        for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) sigaddset(&terminal, signal);
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
    const AsRoot root;
    return ReadCommand("/usr/lib/sendmail -bp");
}
