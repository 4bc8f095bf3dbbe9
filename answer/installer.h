// Install, started on a pseudo-terminal.
#pragma once

#include <sys/types.h>

#include <optional>

#include "answer/terminal.h"

class Installer {
  public:
    /// Starts the program, in whose place nothing else is asked for; the terminal's signals are meant for
    /// this process.
    Installer(const SString& program, const Terminal& terminal);

    bool HasStarted() const { return process_ > 0; }
    /// Whether it waits for input, now, as the kernel tells; nothing if it does not.
    std::optional<bool> IsReading() const;
    /// A signal that ends it cleanly at a question.
    void Signal(int number) const;
    /// Its exit status once it has ended, 128 and the signal's number where one killed it.
    std::optional<int> Ended();

  private:
    pid_t process_;
};
