// Takes the terminal's place for one test: the answers come from here, and what is printed is kept.
#pragma once

#include <iostream>
#include <sstream>

#include "support/sstring.h"

class Dialogue {
  public:
    explicit Dialogue(const SString& answers = "") : answers_(answers.Bytes()) { std::cin.clear(); }
    ~Dialogue() {
        std::cin.rdbuf(input_);
        std::cin.clear();
        std::cout.rdbuf(output_);
    }
    Dialogue(const Dialogue&) = delete;
    Dialogue& operator=(const Dialogue&) = delete;

    SString Screen() const { return screen_.str(); }

  private:
    std::istringstream answers_;
    std::ostringstream screen_;
    std::streambuf* input_ = std::cin.rdbuf(answers_.rdbuf());
    std::streambuf* output_ = std::cout.rdbuf(screen_.rdbuf());
};
