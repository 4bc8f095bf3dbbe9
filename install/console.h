// The terminal dialogue: paragraphs, screens, headers and answers, and the question that all steps ask.
// Everything is written to standard output and flushed before an answer is read. Where that or the reading
// fails, the program ends with status 2 and "Installation aborted." on standard error.
#pragma once

#include <optional>

#include "install/questions.h"
#include "support/text/sstring_list.h"

/// The text re-wrapped: words separated by one blank (two after "!", ".", ":", "?"), every line followed by
/// line_end. A line may run a character or two past width - indent, as separators are not counted.
SString Format(const SString& text, int width, int indent, const SString& line_end);
void ClearScreen();
void PrintHeader(int width, SStringList lines);
/// The answer, or the default when the answer is empty or input has ended. Steps ask with the functions
/// below, from the table of questions.
SString GetInput(const SString& default_answer, int show);
/// A line, without its end; empty where input has ended. Nothing if it cannot be read, or if what was asked
/// could not be written.
std::optional<SString> ReadAnswer();
/// False for no and quit.
bool AskToContinue();

/// Writes the text as it stands and flushes.
void Print(const SString& text);
/// Format at the program's width (75, no indent), written without control characters.
void PrintParagraph(const SString& text);
/// Paragraphs, each with an empty line after it.
void Tell(const SStringList& paragraphs);
/// One entry a line, indented by so many blanks, not wrapped, without control characters (tabs are kept).
void PrintIndented(long indent, const SStringList& entries);
/// The text padded with blanks on the right; one that is longer than the width comes back as it is.
SString PaddedTo(const SString& text, size_t width);

/// Begins a progress line, "Checking the host.... ", and completes it with a word.
void BeginProgress(const SString& what);
void EndProgress(const SString& word);
/// Ends the line without a word, before a longer explanation.
void BreakProgress();

/// Asks the question; the first character of the answer, lower-cased, or NUL. The default is the table's.
char Ask(QuestionId id);
/// The same where the table leaves the default open.
char Ask(QuestionId id, const SString& default_answer);
/// The same for a question whose text holds a value.
char AskAbout(QuestionId id, const SString& value);
/// Asks the question; the whole answer.
SString AskLine(QuestionId id, const SString& default_answer = "");
/// Whether standard input has ended: a question whose default is refused can then never be answered.
bool InputHasEnded();
