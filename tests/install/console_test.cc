#include "install/console.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>

#include "tests/dialogue.h"

namespace {

TEST(Format, FillsLines) {
    const struct {
        SString text;
        int width, indent;
        SString line_end, paragraph;
    } cases[] = {
        {"", 75, 0, "\n", ""},
        {" \t\n ", 75, 0, "\n", ""},
        {"One. Two", 75, 0, "\n", "One.  Two\n"},
        {"Oh! No? Yes: so, then", 75, 0, "\n", "Oh!  No?  Yes:  so, then\n"},
        {"  One.\n\t\tTwo  ", 75, 0, "\n", "One.  Two\n"},
        {SString('x', 80), 75, 0, "\n", SString('x', 80) + "\n"},
        {"a " + SString('x', 80) + " b", 75, 0, "\n", "a\n" + SString('x', 80) + "\nb\n"},
        {"aaaa bbbb", 9, 0, "\n", "aaaa bbbb\n"},     // 8 without the blank: fits
        {"aaaa bbbbb", 9, 0, "\n", "aaaa\nbbbbb\n"},  // 9 reaches the room
        {"aaa. bbbb", 9, 0, "\n", "aaa.  bbbb\n"},    // a line may run past the room by its blanks
        {"a b c d e", 6, 0, "\n", "a b c\nd e\n"},    // blanks within the line do count
        {"aa bb cc", 8, 2, "\n", "  aa\n  bb\n  cc\n"},
        {"aa bb cc", 10, 2, "\n", "  aa bb\n  cc\n"},
        {"a b", 75, 4, "\r\n", "    a b\r\n"},
        {"a b", 0, 0, "\n", "a\nb\n"},
        {"a b", -5, -5, "|", "a|b|"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Format(c.text, c.width, c.indent, c.line_end), c.paragraph) << c.text << " at " << c.width;
    }
}

TEST(Format, TakesALongTextInOnePass) {
    SString text;
    for (int i = 0; i < 1000000; i++) text += "word\t \n";
    EXPECT_EQ(Format(text, 75, 0, "\n").Split("\n").Count(), 66667U);  // 15 words a line
}

TEST(ClearScreen, PrintsARuleAndAFormFeed) {
    const Dialogue dialogue;
    ClearScreen();
    EXPECT_EQ(dialogue.Screen(), "\n" + SString('=', 75) + "\n\f\n");
}

TEST(PrintHeader, FramesItsLines) {
    const SString rule = SString('=', 75) + "\n";
    const SString frame = "=" + SString(' ', 73) + "=\n";
    const Dialogue dialogue;
    PrintHeader(75, {"ten bytes.", "odd"});
    EXPECT_EQ(dialogue.Screen(), "\n" + rule + frame + "=" + SString(' ', 31) + "ten bytes." +
                                     SString(' ', 32) + "=\n" + frame + "=" + SString(' ', 35) + "odd" +
                                     SString(' ', 35) + "=\n" + frame + rule);
}

TEST(PrintHeader, TakesALineThatIsTooLong) {
    const Dialogue dialogue;
    PrintHeader(4, "123456");
    EXPECT_EQ(dialogue.Screen(), "\n====\n=  =\n=123456=\n=  =\n====\n");
}

TEST(PrintHeader, TakesAnyWidth) {
    const Dialogue dialogue;
    PrintHeader(-1, {});
    EXPECT_EQ(dialogue.Screen(), "\n\n==\n\n");
}

TEST(GetInput, GivesTheAnswerOrTheDefault) {
    const SString nul('\0', 1);
    const struct {
        SString typed, answer;
    } cases[] = {
        {"", "default"},      {"\n", "default"},
        {"\r\n", "default"},  {"yes\n", "yes"},
        {"yes\r\n", "yes"},   {"yes", "yes"},
        {"yes\r", "yes"},     {" \n", " "},
        {" a b \n", " a b "}, {"a" + nul + "\n", "a" + nul},
        {"a\rb\n", "a\rb"},
    };
    for (const auto& c : cases) {
        const Dialogue dialogue(c.typed);
        EXPECT_EQ(GetInput("default", 0), c.answer) << c.typed;
        EXPECT_EQ(dialogue.Screen(), "\n");
    }
}

TEST(GetInput, ShowsTheDefaultOnRequest) {
    const Dialogue dialogue("\n");
    EXPECT_EQ(GetInput("80", 1), "80");
    EXPECT_EQ(dialogue.Screen(), "[80] \n");
}

TEST(GetInput, TakesALineOfTenMegabytes) {
    const SString line('x', 10000000);
    const Dialogue dialogue(line + "\n");
    EXPECT_TRUE(GetInput("", 0) == line);
}

TEST(GetInput, EndsTheProgramWhereTheQuestionCannotBeShown) {
    const auto ask = [] {
        const Dialogue dialogue("answer\n");
        std::cout.setstate(std::ios::badbit);
        GetInput("default", 1);
    };
    EXPECT_EXIT(ask(), testing::ExitedWithCode(2), "^Installation aborted.\n$");
}

TEST(GetInput, EndsTheProgramWhereInputFails) {
    const auto ask = [] {
        // Reading a directory is an error, and not the end of the input.
        if (freopen("/", "r", stdin) == nullptr) _exit(1);
        GetInput("default", 1);
    };
    EXPECT_EXIT(ask(), testing::ExitedWithCode(2), "^Installation aborted.\n$");
}

TEST(InputHasEnded, IsToldOnlyByAReadThatFindsNothing) {
    const Dialogue dialogue("one\ntwo");
    EXPECT_FALSE(InputHasEnded());
    EXPECT_EQ(GetInput("none", 0), "one");
    EXPECT_EQ(GetInput("none", 0), "two");
    EXPECT_FALSE(InputHasEnded());
    EXPECT_EQ(GetInput("none", 0), "none");
    EXPECT_TRUE(InputHasEnded());
    EXPECT_EQ(GetInput("none", 0), "none");
}

TEST(Ask, GivesTheFirstCharacterInLowerCase) {
    const struct {
        SString typed;
        char letter;
    } cases[] = {{"Yes\n", 'y'}, {"n\n", 'n'}, {"\n", 'd'}, {"", 'd'}, {" y\n", ' '}, {"7\n", '7'}};
    for (const auto& c : cases) {
        const Dialogue dialogue(c.typed);
        EXPECT_EQ(Ask(QuestionId::AccountMethod, "Default"), c.letter) << c.typed;
        EXPECT_EQ(dialogue.Screen(), "Which method? All/Passwd/None/Quit [Default] \n");
    }
}

TEST(Ask, GivesNulForNoAnswerAtAll) {
    const Dialogue dialogue("\n");
    EXPECT_EQ(Ask(QuestionId::AllowEmail, ""), '\0');
}

TEST(AskToContinue, TakesYesNoAndQuit) {
    const struct {
        SString typed;
        bool goes_on;
    } cases[] = {
        {"\n", true},   {"", true},      {"y\n", true},  {"Yup\n", true},
        {"N\n", false}, {"no\n", false}, {"Q\n", false}, {"quit", false},
    };
    for (const auto& c : cases) {
        const Dialogue dialogue(c.typed);
        EXPECT_EQ(AskToContinue(), c.goes_on) << c.typed;
        EXPECT_EQ(dialogue.Screen(), "Do you want to continue? yes/no/quit [yes] \n");
    }
}

TEST(AskToContinue, AsksAgain) {
    const Dialogue dialogue("maybe\n \n");
    EXPECT_TRUE(AskToContinue());
    EXPECT_EQ(dialogue.Screen(),
              "Do you want to continue? yes/no/quit [yes] \n"
              "Please enter 'yes', 'no', or 'quit': [yes] \n"
              "Please enter 'yes', 'no', or 'quit': [yes] \n");
}

TEST(PrintParagraph, HasTheProgramsWidth) {
    const Dialogue dialogue;
    PrintParagraph(SString('a', 37) + " " + SString('b', 37) + " " + SString('c', 75));
    EXPECT_EQ(dialogue.Screen(), SString('a', 37) + " " + SString('b', 37) + "\n" + SString('c', 75) + "\n");
}

TEST(PrintParagraph, ShowsNoControlCharacters) {
    const Dialogue dialogue;
    PrintParagraph("Couldn't create \x1b[2J/mail\r\xc2\x9b:\ta b\xc3\xa9\x7f");
    EXPECT_EQ(dialogue.Screen(), "Couldn't create ?[2J/mail??:?a b\xc3\xa9?\n");
}

TEST(Tell, EndsEachParagraphWithAnEmptyLine) {
    const Dialogue dialogue;
    Tell("one");
    Tell({"two", SString("three")});
    EXPECT_EQ(dialogue.Screen(), "one\n\ntwo\n\nthree\n\n");
}

TEST(PrintIndented, WrapsNothingAndShowsNoControlCharacters) {
    const Dialogue dialogue;
    PrintIndented(4, {SString('a', 80), "", "b\x1b[2J\tc"});
    PrintIndented(4, {});
    EXPECT_EQ(dialogue.Screen(), "    " + SString('a', 80) + "\n    \n    b?[2J\tc\n");
}

TEST(PaddedTo, LeavesALongerTextAlone) {
    EXPECT_EQ(PaddedTo("smtp", 6), "smtp  ");
    EXPECT_EQ(PaddedTo("smtp", 4), "smtp");
    EXPECT_EQ(PaddedTo("submission", 4), "submission");
}

TEST(Progress, IsCompletedOnItsLineOrBroken) {
    const Dialogue dialogue;
    BeginProgress("Checking");
    EndProgress("found");
    BeginProgress("Checking again");
    BreakProgress();
    EXPECT_EQ(dialogue.Screen(), "Checking.... found\nChecking again.... \n\n");
}

}  // namespace
