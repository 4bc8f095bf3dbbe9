#include "answer/session.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <iostream>

#include "answer/keys.h"
#include "support/process/blocked_signals.h"

namespace {

using namespace std::chrono_literals;

constexpr int kStopped = 2;
constexpr int kUnanswered = 4;
constexpr auto kPatience = 20ms;
constexpr int kMostReads =
    256;  // more than a terminal holds, as a server that was started may write for ever

void Complain(const SString& text) {
    std::cerr << "Answer: " << text << "\n" << std::flush;
}

}  // namespace

int Session::Run(const SString& program) {
    const auto terminal = Terminal::Open();
    if (!terminal) {
        Complain("there is no pseudo-terminal: " + SString(std::strerror(errno)));
        return kStopped;
    }
    const BlockedSignals block(kTerminalSignals);  // they are passed on
    Installer installer(program, *terminal);
    if (!installer.HasStarted()) {
        Complain("no process can be started: " + SString(std::strerror(errno)));
        return kStopped;
    }
    const int status = Converse(*terminal, &installer);
    ListUnused();
    if (!is_shown_) Complain("what Install showed could not all be written");
    return is_unanswered_ ? kUnanswered : status;
}

/// Until it has exited: the server that it has started may keep the terminal, and write to it, for ever.
int Session::Converse(const Terminal& terminal, Installer* installer) {
    for (;;) {
        PassSignalsOn(*installer);
        const bool is_quiet = !ShowNext(terminal, kPatience);
        if (const auto status = installer->Ended()) {
            ShowLast(terminal);
            return *status;
        }
        if (is_quiet && !is_ended_ && !is_answered_) AnswerIfAsked(terminal, *installer);
    }
}

void Session::PassSignalsOn(const Installer& installer) const {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : kTerminalSignals) sigaddset(&signals, number);
    const timespec at_once{};
    for (int number = 0; (number = sigtimedwait(&signals, nullptr, &at_once)) > 0;) installer.Signal(number);
}

/// False if nothing was written for so long.
bool Session::ShowNext(const Terminal& terminal, std::chrono::milliseconds patience) {
    const SString bytes = terminal.Read(patience);
    if (bytes.IsEmpty()) return false;
    is_answered_ = false;
    const size_t end = bytes.Bytes().rfind('\n');
    line_ = end == std::string::npos ? line_ + bytes.Bytes() : bytes.Bytes().substr(end + 1);
    Show(mask_.Pass(bytes));
    return true;
}

void Session::ShowLast(const Terminal& terminal) {
    for (int reads = 0; reads < kMostReads && ShowNext(terminal, 0ms);) ++reads;
    Show(mask_.Rest());
}

void Session::Show(const SString& bytes) {
    if (!(std::cout << bytes << std::flush)) is_shown_ = false;
}

/// A prompt's text counts only where it is all that the last line holds, and the program waits for input:
/// then nothing is under way that was written before, once the terminal was looked at again.
void Session::AnswerIfAsked(const Terminal& terminal, const Installer& installer) {
    const auto is_reading = installer.IsReading();
    if (is_reading == false || ShowNext(terminal, 0ms)) return;
    if (!is_reading)
        return End(installer, "cannot tell when Install waits: " + SString(std::strerror(errno)));
    Show(mask_.Rest());
    if (!is_shown_) return End(installer, "what Install shows cannot be written");
    const Question* question = QuestionAsked(SString(line_));
    if (question == nullptr)
        return End(installer, "Install waits for something that is none of its questions");
    const auto answer = TakeAnswer(&file_, *question);
    if (!answer) return EndUnanswered(installer, *question);
    if (!Type(terminal, *question, *answer)) End(installer, "the answer cannot be typed");
}

bool Session::Type(const Terminal& terminal, const Question& question, const SString& answer) {
    const bool is_secret = question.kind == QuestionKind::Password;
    if (is_secret) mask_.Hide(answer);
    Show(is_secret ? SString(kMasked) : mask_.Pass(answer));
    Show(mask_.Rest());
    line_.clear();
    is_answered_ = true;
    return terminal.Type(answer + "\n");
}

/// SIGTERM ends it at a question at once, as nothing is under way there.
void Session::End(const Installer& installer, const SString& reason) {
    installer.Signal(SIGTERM);
    is_ended_ = true;
    Show("\n");
    Complain(reason + "; Install is ended here.");
}

void Session::EndUnanswered(const Installer& installer, const Question& question) {
    End(installer, path_ + " has no answer to this question");
    SString line = mask_.Pass(LineFor(question, DefaultShown(SString(line_))));
    line += mask_.Rest();
    std::cerr << "Add a line like this one:\n" << line << "\n" << std::flush;
    is_unanswered_ = true;
}

void Session::ListUnused() const {
    for (const Answer& answer : file_.answers) {
        Complain(path_ + ":" + SString(answer.line) + ": not asked: " + KeyOf(*answer.question));
    }
}
