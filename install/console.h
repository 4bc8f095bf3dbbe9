// The terminal dialogue: paragraphs, screens, headers and answers, and the question that all steps ask.
// Everything is written to standard output and flushed before an answer is read.
#pragma once

#include "support/text/sstring_list.h"

/// The text re-wrapped: words separated by one blank (two after "!", ".", ":", "?"), every line followed by
/// line_end. A line may run a character or two past width - indent, as separators are not counted.
SString Format(const SString& text, int width, int indent, const SString& line_end);
void ClearScreen();
void PrintHeader(int width, SStringList lines);
/// The answer, or the default when the answer is empty or input has ended.
SString GetInput(const SString& default_answer, int show);
/// False for no and quit.
bool AskToContinue();

/// Writes the text as it stands and flushes.
void Print(const SString& text);
/// Format at the program's width (75, no indent), written without control characters.
void PrintParagraph(const SString& text);
/// The prompt, then GetInput with its default shown; the first character of the answer, lower-cased, or NUL.
char Ask(const SString& prompt, const SString& default_answer);
/// Whether standard input has ended: a question whose default is refused can then never be answered.
bool InputHasEnded();
/// After such a refusal: prints "Installation aborted." and gives false, for the step to return.
bool AbortAtEndOfInput();
