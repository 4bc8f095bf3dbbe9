#include "answer/answer_file.h"

#include <gtest/gtest.h>

#include "answer/keys.h"
#include "tests/temporary_folder.h"

namespace {

class AnswerFileTest : public testing::Test {
  protected:
    AnswerFile Read(const SString& text, mode_t mode = 0600) {
        return ReadAnswerFile(folder_.Write("answers", text, mode));
    }

    /// The only error, without the file's name.
    SString Error(const SString& text, mode_t mode = 0600) {
        const SStringList errors = Read(text, mode).errors;
        EXPECT_EQ(errors.Count(), 1U) << text << ": " << errors.Join("\n");
        return SString(errors.Get(0).Bytes().substr((folder_ / "answers").Length()));
    }

    TemporaryFolder folder_;
};

/// "KEY = ANSWER" for each answer.
SStringList Shown(const AnswerFile& file) {
    SStringList lines;
    for (const Answer& answer : file.answers) {
        lines.Push(SString(answer.line) + " " + KeyOf(*answer.question) + " = " + answer.text);
    }
    return lines;
}

TEST_F(AnswerFileTest, HasALineForEachAnswer) {
    const AnswerFile file = Read(
        "# a comment\n"
        "\n"
        "Which method?=p\r\n"
        "  Mail domains =  example.com mail.example.com \n"
        "Access Domains =\n"
        "Which processes? = a=b # < no comment\n"
        "Postmasters = root@example.com");
    EXPECT_EQ(file.errors, SStringList());
    EXPECT_FALSE(file.takes_defaults);
    EXPECT_EQ(Shown(file),
              SStringList({"3 Which method? = p", "4 Mail domains = example.com mail.example.com",
                           "5 Access Domains = ", "6 Which processes? = a=b # < no comment",
                           "7 Postmasters = root@example.com"}));
}

TEST_F(AnswerFileTest, MayBeEmpty) {
    EXPECT_EQ(Shown(Read("")), SStringList());
    EXPECT_EQ(Shown(Read("\n \n#\n")), SStringList());
    EXPECT_EQ(Shown(Read("\xef\xbb\xbf# with a byte order mark\n")), SStringList());
}

TEST_F(AnswerFileTest, NamesTheLineOfAnError) {
    const struct {
        SString text, error;
    } cases[] = {
        {"yes\n", ":1: neither \"QUESTION = ANSWER\" nor \"QUESTION < FILE\""},
        {"\n= yes\n", ":2: neither \"QUESTION = ANSWER\" nor \"QUESTION < FILE\""},
        {"Add mail.example.com to the list? = yes\n", ":1: that question is named by \"Add\""},
        {"Which metod? = p\n", ":1: no question begins with what stands before \"=\" or \"<\""},
        {"Which = p\n", ":1: \"Which\" fits more than one question: \"Which method?\", \"Which processes?\""},
        {"Which method? = x\n", ":1: this is no answer to \"Which method?\""},
        {"Kill sendmail = p\n", ":1: this is no answer to \"Kill sendmail daemon process?\""},
        {"Is this what you want? = quit\n", ":1: this is no answer to \"Is this what you want?\""},
        {"Postmaster password = short\n",
         ":1: a password has at least 6 characters and does not begin with a blank"},
        {"Postmaster password =\n",
         ":1: a password has at least 6 characters and does not begin with a blank"},
        {"Mail domains = a\x1b"
         "b\n",
         ":1: the answer holds a control character"},
        {"World Wide Web port = 65536\n",
         ":1: this is no answer to \"World Wide Web port for configuration\""},
        {"Mail domains = example.com exam_ple.com\n", ":1: this is no answer to \"Mail domains\""},
        {"Access Domains = example.com,-x-\n", ":1: this is no answer to \"Access Domains\""},
        {"  # indented\n", ":1: neither \"QUESTION = ANSWER\" nor \"QUESTION < FILE\""},
        {"Postmasters <\n", ":1: \"<\" needs a file after it"},
        {"* = yes\n", ":1: \"*\" stands for nothing but \"* = default\""},
        {"* < default\n", ":1: \"*\" stands for nothing but \"* = default\""},
        {"Postmasters < /nonexistent/file\n", ":1: /nonexistent/file: No such file or directory"},
        {"Postmasters < /\n", ":1: /: it is no regular file"},
        {"Do you want /etc/services updated = yes\n",
         ":1: no question begins with what stands before \"=\" or \"<\""},
    };
    for (const auto& c : cases) EXPECT_EQ(Error(c.text), c.error);
}

TEST_F(AnswerFileTest, TellsAllErrors) {
    EXPECT_EQ(Read("a\nWhich method? = p\nb = c\n").errors.Count(), 2U);
}

TEST_F(AnswerFileTest, MustBeReadable) {
    EXPECT_EQ(ReadAnswerFile("/nonexistent").errors, SStringList("/nonexistent: No such file or directory"));
    EXPECT_EQ(ReadAnswerFile("/dev/null").errors, SStringList("/dev/null: it is no regular file"));
}

TEST_F(AnswerFileTest, KeepsAPasswordFromOthers) {
    EXPECT_EQ(Error("Postmaster password = secret\n", 0640),
              ":1: the file holds a password, but others than root may read or change it (chmod 600)");
    EXPECT_EQ(Read("Which method? = p\n", 0644).errors, SStringList());

    const SString open = folder_.Write("open", "secret\n");
    EXPECT_EQ(Error("Postmaster password < " + open + "\n"),
              ":1: " + open + ": others than root may read or change it (chmod 600)");
}

TEST_F(AnswerFileTest, TakesTheFirstLineOfAFileAsItIs) {
    const SString path = folder_.Write("password", " two words = one \r\nnot this\n", 0600);
    EXPECT_EQ(Shown(Read("Postmasters < " + path)), SStringList("1 Postmasters =  two words = one "));
    EXPECT_EQ(Shown(Read("Postmasters < password")), SStringList("1 Postmasters =  two words = one "));
    const SString empty = folder_.Write("empty", "", 0600);
    EXPECT_EQ(Error("Postmaster password < " + empty), ":1: " + empty + ": it is empty");
}

TEST_F(AnswerFileTest, IsWhatTheQuestionsAreFilledInto) {
    const SString password = folder_.Write("password", "secret\n", 0600);
    const SString filled = QuestionsToFillIn().S("\n#(?! )", "\n", "g").S("FILE", password);
    const AnswerFile file = Read(filled);
    EXPECT_EQ(file.errors, SStringList());
    EXPECT_TRUE(file.takes_defaults);
    EXPECT_EQ(file.answers.size(), Questions().size());
}

TEST_F(AnswerFileTest, AnswersOnceALine) {
    AnswerFile file = Read("Do you want to continue? = yes\nWhich method? = p\nDo you want to cont = no\n");
    const Question& question = QuestionOf(QuestionId::Continue);
    EXPECT_EQ(TakeAnswer(&file, question), "yes");
    EXPECT_EQ(TakeAnswer(&file, question), "no");
    EXPECT_EQ(TakeAnswer(&file, question), std::nullopt);
    EXPECT_EQ(Shown(file), SStringList("2 Which method? = p"));
}

TEST_F(AnswerFileTest, GivesDefaultsOnlyWhereItSaysSo) {
    AnswerFile file = Read("Which method? = p\n* = default\n");
    EXPECT_EQ(TakeAnswer(&file, QuestionOf(QuestionId::AccountMethod)), "p");
    EXPECT_EQ(TakeAnswer(&file, QuestionOf(QuestionId::ConfirmDomains)), "");
    EXPECT_EQ(TakeAnswer(&file, QuestionOf(QuestionId::PostmasterPassword)), std::nullopt);
}

TEST_F(AnswerFileTest, GivesNoDefaultInsteadOfAnAnswer) {
    AnswerFile file = Read("Is this what you want? = no\n* = default\n");
    EXPECT_EQ(TakeAnswer(&file, QuestionOf(QuestionId::ConfirmDomains)), "no");
    EXPECT_EQ(TakeAnswer(&file, QuestionOf(QuestionId::ConfirmDomains)), std::nullopt);
}

TEST_F(AnswerFileTest, GivesNoDefaultThatWasRefused) {
    AnswerFile file = Read("* = default\n");
    EXPECT_EQ(TakeAnswer(&file, QuestionOf(QuestionId::Continue)), "");
    EXPECT_EQ(TakeAnswer(&file, QuestionOf(QuestionId::Continue)), "");
    EXPECT_EQ(TakeAnswer(&file, QuestionOf(QuestionId::AccessDomains)), "");
    EXPECT_EQ(TakeAnswer(&file, QuestionOf(QuestionId::AccessDomains)), std::nullopt);
}

}  // namespace
