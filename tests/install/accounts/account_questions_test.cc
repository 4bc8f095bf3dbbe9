#include "install/accounts/account_questions.h"

#include <gtest/gtest.h>

#include "install/console.h"
#include "tests/dialogue.h"

namespace {

const SString kHost = "mail.example.com";
const SString kDomain = "example.com";

TEST(AskAccountMethod, TakesTheFirstLetterAndProposesByWhatIsThere) {
    const struct {
        const char* answers;
        bool accounts_exist;
        AccountMethod method;
    } cases[] = {
        {"a\n", false, AccountMethod::AllSources},
        {"All\n", true, AccountMethod::AllSources},
        {"p\n", true, AccountMethod::PasswordFile},
        {"none\n", false, AccountMethod::None},
        {"Quit\n", true, AccountMethod::Quit},
        {"\n", false, AccountMethod::PasswordFile},
        {"\n", true, AccountMethod::None},
        {"", false, AccountMethod::PasswordFile},
        {"", true, AccountMethod::None},
        {"x\n", true, AccountMethod::PasswordFile},
    };
    for (const auto& c : cases) {
        const Dialogue dialogue(c.answers);
        EXPECT_EQ(AskAccountMethod(c.accounts_exist), c.method) << c.answers << c.accounts_exist;
    }
}

struct Answers {
    const char* what;
    SString answers;
    SStringList domains;
};

TEST(AskMailDomains, AcceptsWhatIsValid) {
    const Answers cases[] = {
        {"the proposal", "\n\n", {kHost}},
        {"no input at all", "", {kHost}},
        {"two", "example.com,mail.example.com\n\n", {"example.com", "mail.example.com"}},
        {"blanks and commas",
         " , example.com ,\tmail.example.com,, \n\n",
         {"example.com", "mail.example.com"}},
        {"the case is kept", "Example.COM,Mail.Example.com\n\n", {"Example.COM", "Mail.Example.com"}},
        {"a lone label", "mail\n\n", {"mail.example.com"}},
        {"a lone label elsewhere", "pop\nyes\n\n", {"pop.example.com", kHost}},
        {"the host name refused", "example.com\nno\n\n", {"example.com"}},
        {"anything else than y adds nothing", "example.com\nx\n\n", {"example.com"}},
        {"an invalid one among valid ones",
         "a_b.com,example.com,mail.example.com\n\n",
         {"example.com", "mail.example.com"}},
        {"only invalid ones, host name taken", "a_b.com\nyes\n\n", {kHost}},
        {"only invalid ones, host name refused, then the proposal", "a_b.com\nno\n\n\n", {kHost}},
        {"blanks only", "  \nno\nexample.com\nno\nyes\n", {"example.com"}},
        {"changed", "a.example\nno\nno\nb.example\nno\nyes\n", {"b.example"}},
        {"kept at the second round", "A.Example\nno\nno\n\nno\nyes\n", {"a.example"}},
        {"refused, then the input ends", "A.Example\nno\nno\n", {"a.example", kHost}},
    };
    for (const Answers& c : cases) {
        Dialogue dialogue(c.answers);
        const auto domains = AskMailDomains(kHost, kDomain);
        ASSERT_TRUE(domains) << c.what;
        EXPECT_EQ(*domains, c.domains) << c.what;
    }
}

TEST(AskMailDomains, ProposesTheHostAgainAfterAnEmptyList) {
    const Dialogue dialogue("a.example\nno\nno\na_b.com\nno\n\n");  // refused; invalid, without the host
    EXPECT_EQ(AskMailDomains(kHost, kDomain), SStringList(kHost));
}

TEST(AskMailDomains, CanBeQuit) {
    Dialogue dialogue("example.com\nQuit\n");
    EXPECT_FALSE(AskMailDomains(kHost, kDomain));
}

TEST(AskMailDomains, TakesTheHostNameAsItIsWritten) {
    Dialogue dialogue("example.com\nyes\nyes\n");
    EXPECT_EQ(*AskMailDomains("Mail.Example.com", kDomain), SStringList({"example.com", "Mail.Example.com"}));
    Dialogue other("MAIL.example.com\nyes\n");
    EXPECT_EQ(*AskMailDomains("Mail.Example.com", kDomain), SStringList("MAIL.example.com"));
}

TEST(AskMailDomains, ReadsAsADialogue) {
    Dialogue dialogue("bad_one \x1b[2J,News.Example.org\nn\nn\n\nyes\n\n");
    ASSERT_TRUE(AskMailDomains(kHost, kDomain));
    EXPECT_EQ(dialogue.Screen().Bytes(),
              "Please list all of the mail domains that each user should receive mail for,\n"
              "listing the most important one first (i.e.  the one that should show up on\n"
              "outgoing mail).\n"
              "For example, if you want all of your users to receive mail addressed to\n"
              "<user@example.com> as well as <user@mail.example.com>, and you prefer the\n"
              "address with just your domain for outgoing mail, you would specify\n"
              "    example.com,mail.example.com\n"
              "\n"
              "here.  You can list as many domains as you want, separated by spaces or\n"
              "commas.\n"
              "Mail domains: [mail.example.com] \n"
              "Checking domains....\n"
              "Invalid syntax for domain: bad_one\n"
              "Invalid syntax for domain: ?[2J\n"
              "You didn't specify the hostname of this machine.  You will probably see a\n"
              "lot of errors for misaddressed mail without it, so you are encouraged to\n"
              "add it to the list.\n"
              "Add mail.example.com to the list? yes/no/quit [yes] \n"
              "The following domains will be used for addresses in each user's account:\n"
              "     News.Example.org\n"
              "\n"
              "Also, addresses in outgoing mail will have News.Example.org as the domain.\n"
              "Is this what you want? yes/no [yes] \n"
              "Mail domains: [news.example.org] \n"
              "Checking domains....\n"
              "You didn't specify the hostname of this machine.  You will probably see a\n"
              "lot of errors for misaddressed mail without it, so you are encouraged to\n"
              "add it to the list.\n"
              "Add mail.example.com to the list? yes/no/quit [yes] \n"
              "The following domains will be used for addresses in each user's account:\n"
              "     news.example.org\n"
              "     mail.example.com\n"
              "\n"
              "Also, addresses in outgoing mail will have news.example.org as the domain.\n"
              "Is this what you want? yes/no [yes] \n");
}

TEST(AskMailDomains, ShowsNoControlCharacters) {
    Dialogue dialogue("pop\nyes\nyes\n");
    ASSERT_TRUE(AskMailDomains("mail.\x1b[2J", "\x1b[2J"));
    EXPECT_EQ(dialogue.Screen().Index('\x1b'), -1) << dialogue.Screen();
}

TEST(AskMailDomains, AsksAgainWhenNoDomainIsLeft) {
    Dialogue dialogue("a_b\nno\n");
    ASSERT_TRUE(AskMailDomains(kHost, kDomain));
    EXPECT_NE(dialogue.Screen().Bytes().find("Error: You must specify at least one domain.\n"
                                             "Mail domains: [mail.example.com] \n"),
              std::string::npos);
}

}  // namespace
