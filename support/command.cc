#include "support/command.h"

#include <array>
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
    "LC_ALL=C.UTF-8; export LC_ALL\n";

constexpr std::array kTerminalSignals = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

/// The terminal's signals ignored for a scope. A child started in it ignores them for its life, so that a
/// Ctrl-C, which reaches the whole foreground group, never cuts a probe short. They are blocked as well: what
/// comes in the meantime stays pending (on Linux, although ignored) and reaches this process afterwards.
class TerminalSignalsIgnored {
  public:
    TerminalSignalsIgnored() {
        sigset_t terminal;
        sigemptyset(&terminal);
        for (const int number : kTerminalSignals) sigaddset(&terminal, number);
        sigprocmask(SIG_BLOCK, &terminal, &mask_before_);
        struct sigaction ignore {};
        ignore.sa_handler = SIG_IGN;
        for (size_t i = 0; i < before_.size(); ++i) sigaction(kTerminalSignals[i], &ignore, &before_[i]);
    }
    ~TerminalSignalsIgnored() {
        for (size_t i = 0; i < before_.size(); ++i) sigaction(kTerminalSignals[i], &before_[i], nullptr);
        sigprocmask(SIG_SETMASK, &mask_before_, nullptr);
    }
    TerminalSignalsIgnored(const TerminalSignalsIgnored&) = delete;
    TerminalSignalsIgnored& operator=(const TerminalSignalsIgnored&) = delete;

  private:
    sigset_t mask_before_{};
    std::array<struct sigaction, kTerminalSignals.size()> before_{};
};

FILE* Start(const SString& command) {
    const TerminalSignalsIgnored ignored;
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
