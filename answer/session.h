// A run of Install that is answered from a file.
#pragma once

#include <optional>

#include "answer/answer_file.h"
#include "answer/installer.h"
#include "answer/mask.h"
#include "answer/terminal.h"

class Session {
  public:
    Session(const SString& path, AnswerFile file) : path_(path), file_(std::move(file)) {}

    /// Runs the program, shows what it shows and answers its questions. Its exit status; 4 where a question
    /// had no answer; 2 where it could not be run on a terminal.
    int Run(const SString& program);

  private:
    int Converse(const Terminal& terminal, Installer* installer);
    void PassSignalsOn(const Installer& installer) const;
    bool ShowNext(const Terminal& terminal, std::chrono::milliseconds patience);
    void ShowLast(const Terminal& terminal);
    void Show(const SString& bytes);
    void AnswerIfAsked(const Terminal& terminal, const Installer& installer);
    bool Type(const Terminal& terminal, const Question& question, const SString& answer);
    void End(const Installer& installer, const SString& reason);
    void EndUnanswered(const Installer& installer, const Question& question);
    void ListUnused() const;

    SString path_;
    AnswerFile file_;
    Mask mask_;
    std::string line_;            // the last one on the screen, as it was written
    bool is_answered_ = false;    // what it waits for has been typed, and nothing was written since
    bool is_shown_ = true;        // standard output takes what is written to it
    bool is_ended_ = false;       // by this program
    bool is_unanswered_ = false;  // for want of an answer
};
