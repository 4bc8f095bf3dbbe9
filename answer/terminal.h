// A pseudo-terminal of its own for a program: raw, so that nothing is echoed or translated.
#pragma once

#include <chrono>
#include <optional>

#include "support/system/descriptor.h"

class Terminal {
  public:
    /// Nothing if the system gives none; errno tells why.
    static std::optional<Terminal> Open();

    /// In a child: makes it the terminal of a new session, and the child's standard descriptors.
    bool Become() const;
    /// What the program has written; empty if that is nothing for so long. What was written before the call
    /// counts as there (the kernel brings it over before poll(2) says that there is nothing).
    SString Read(std::chrono::milliseconds patience) const;
    bool Type(const SString& text) const { return ours_.WriteAll(text); }

  private:
    Terminal(Descriptor ours, Descriptor programs) : ours_(std::move(ours)), programs_(std::move(programs)) {}

    Descriptor ours_;
    Descriptor programs_;  // open here, too, so that the program's end is no hang-up
};
