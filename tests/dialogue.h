// Replaces the terminal for a test: while it lives, standard input holds the prepared answers, and what is
// printed is kept instead of shown.
#pragma once

#include <iostream>
#include <sstream>

#include "support/text/sstring.h"

class Dialogue {
  public:
    explicit Dialogue(const SString& answers = "")
        : answers_(answers.Bytes()),
          input_(std::cin.rdbuf(answers_.rdbuf())),
          output_(std::cout.rdbuf(screen_.rdbuf())) {
        std::cin.clear();
    }
    ~Dialogue() {
        std::cin.rdbuf(input_);
        std::cout.rdbuf(output_);
        std::cin.clear();
    }
    Dialogue(const Dialogue&) = delete;
    Dialogue& operator=(const Dialogue&) = delete;

    SString Screen() const { return SString(screen_.str()); }

  private:
    std::istringstream answers_;
    std::ostringstream screen_;
    std::streambuf* input_;
    std::streambuf* output_;
};
