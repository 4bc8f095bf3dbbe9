#include "install/console.h"
#include "support/text/printable.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>

namespace {

constexpr int kWidth = 75;

SString Rule(long width) {
    return SString('=', width);
}

SString Frame(long width) {
    return "=" + SString(' ', width - 2) + "=\n";
}

SString Centred(const SString& text, long width) {
    const long blanks = width - static_cast<long>(text.Length()) - 2;
    const long left = blanks / 2;
    return "=" + SString(' ', left) + text + SString(' ', blanks - left) + "=\n";
}

bool EndsSentence(const SString& line) {
    return SString("!.:?").Index(line[-1]) >= 0;
}

/// One line of the paragraph, taken from the words.
SString FillLine(SStringList* words, long room, int indent) {
    SString line = SString(' ', indent) + words->Shift();
    while (!words->IsEmpty() && static_cast<long>(line.Length()) < room) {
        // The separator is not counted, so a line may run a little past the room.
        const size_t length = line.Length() + (*words)[0].Length();
        if (static_cast<long>(length) >= room) break;
        if (EndsSentence(line)) line += ' ';
        line += ' ' + words->Shift();
    }
    return line;
}

char FirstLetter(SString answer) {
    return answer.LowerCase()[0];
}

/// The default is no answer of somebody who didn't see the question or could not be heard. No question is
/// asked under another identity, in a transaction or in a critical section: the end of the process leaves
/// nothing open.
[[noreturn]] void EndUnanswered() {
    constexpr int kStopped = 2;
    std::cerr << "Installation aborted.\n";
    std::exit(kStopped);
}

}  // namespace

SString Format(const SString& text, int width, int indent, const SString& line_end) {
    SStringList words = text.Split(' ');
    SString paragraph;
    while (!words.IsEmpty())
        paragraph += FillLine(&words, static_cast<long>(width) - indent, indent) + line_end;
    return paragraph;
}

void ClearScreen() {
    Print("\n" + Rule(kWidth) + "\n\f\n");
}

void PrintHeader(int width, SStringList lines) {
    SString header = "\n" + Rule(width) + "\n" + Frame(width);
    while (!lines.IsEmpty()) header += Centred(lines.Shift(), width) + Frame(width);
    Print(header + Rule(width) + "\n");
}

SString GetInput(const SString& default_answer, int show) {
    Print(show != 0 ? "[" + Printable(default_answer) + "] " : SString());
    const std::optional<SString> answer = ReadAnswer();
    if (!answer) EndUnanswered();
    Print("\n");
    return answer->IsEmpty() ? default_answer : *answer;
}

std::optional<SString> ReadAnswer() {
    if (!std::cout) return std::nullopt;
    SString answer;
    std::cin >> answer;
    if (std::ferror(stdin) != 0) return std::nullopt;
    return answer.ChopLineEnd();
}

bool AskToContinue() {
    char answer = Ask(QuestionId::Continue);
    while (answer != 'y' && answer != 'n' && answer != 'q') {
        answer = Ask(QuestionId::YesNoOrQuit);
    }
    return answer == 'y';
}

void Print(const SString& text) {
    std::cout << text << std::flush;
}

void PrintParagraph(const SString& text) {
    Print(Format(Printable(text), kWidth, 0, "\n"));
}

void Tell(const SStringList& paragraphs) {
    for (const SString& paragraph : paragraphs) {
        PrintParagraph(paragraph);
        Print("\n");
    }
}

void PrintIndented(long indent, const SStringList& entries) {
    SString lines;
    for (const SString& entry : entries) lines += SString(' ', indent) + Printable(entry, "\t") + "\n";
    Print(lines);
}

SString PaddedTo(const SString& text, size_t width) {
    return text.Length() < width ? text + SString(' ', width - text.Length()) : text;
}

void BeginProgress(const SString& what) {
    Print(what + ".... ");
}

void EndProgress(const SString& word) {
    Print(word + "\n");
}

void BreakProgress() {
    Print("\n\n");
}

char Ask(QuestionId id) {
    return Ask(id, QuestionOf(id).default_answer);
}

char Ask(QuestionId id, const SString& default_answer) {
    return FirstLetter(AskLine(id, default_answer));
}

char AskAbout(QuestionId id, const SString& value) {
    const Question& question = QuestionOf(id);
    Print(SString(question.text) + Printable(value) + SString(question.rest));
    return FirstLetter(GetInput(question.default_answer, 1));
}

SString AskLine(QuestionId id, const SString& default_answer) {
    const Question& question = QuestionOf(id);
    Print(SString(question.text));
    return GetInput(default_answer, ShowsDefault(question) ? 1 : 0);
}

// A last line without a line end is still an answer; only a read that finds nothing fails.
bool InputHasEnded() {
    return std::cin.fail();
}
