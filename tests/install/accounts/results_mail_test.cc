#include "install/accounts/results_mail.h"

#include <gtest/gtest.h>

#include "tests/install/accounts/sample_results.h"

namespace {

const char kBeginning[] =
    "Here's a summary of the tasks performed by the tern.harbor\r\n"
    "Install program:\r\n"
    "\r\n"
    "Accounts were set up for the following users:\r\n"
    "\r\n";
const char kAliases[] =
    "\r\n"
    "\r\n"
    "No system-wide aliases or user forwards were set up by the\r\n"
    "installation process (users with .forward files, if any,\r\n"
    "are listed below). Please look through your aliases file\r\n"
    "and set up accounts or aliases as necessary. See manual\r\n"
    "chapters 5 and 6 which describe the three alias types\r\n"
    "and how to set them up.\r\n"
    "\r\n";
const char kCreated[] =
    "        Ann Lee (ann)\r\n"
    "        Jones Smith (jones)\r\n";
const char kFailed[] =
    "\r\n"
    "Install failed to set up accounts for the following users:\r\n"
    "(contact Ardenvale for assistance)\r\n"
    "\r\n"
    "        A B (a b)\r\n"
    "\r\n";
const char kSkippedBeginning[] =
    "\r\n"
    "Accounts *were not* set up for the following UNIX id's\r\n"
    "since they historically do not refer to actual users or\r\n"
    "because a home directory isn't specified in the password\r\n"
    "database:\r\n"
    "\r\n";
const char kSkippedEnd[] =
    "\r\n"
    "You can add these accounts, or create aliases for them if\r\n"
    "you want. See the manual for instructions.\r\n"
    "\r\n";
const char kForwards[] =
    "\r\n"
    "The following users had .forward files in their home dir-\r\n"
    "ectories:\r\n"
    "\r\n"
    "        ann@example.com\r\n"
    "        jones@example.com\r\n"
    "\r\n"
    "These files are not going to be honored by tern.harbor.\r\n"
    "See the manual for instructions on setting up forwarding\r\n"
    "for an account.\r\n"
    "\r\n";
const char kThanks[] =
    "\r\n"
    "Thank you for installing tern.harbor!\r\n"
    "\r\n";

TEST(ResultsMailBody, TellsAllThatHappened) {
    EXPECT_EQ(ResultsMailBody(SampleResults()).Bytes(), std::string(kBeginning) + kCreated + kAliases +
                                                            kFailed + kSkippedBeginning +
                                                            "        bin          (bin)\r\n"
                                                            "        nobody       (Nobody)\r\n"
                                                            "        twelve-chars (Long)\r\n" +
                                                            kSkippedEnd + kForwards + kThanks);
}

TEST(ResultsMailBody, LeavesFailuresOutWhereAccountsExisted) {
    AccountResults results = SampleResults();
    results.accounts_existed = true;
    results.skipped_logins.Reset();
    results.forward_users.Reset();
    EXPECT_EQ(ResultsMailBody(results).Bytes(), std::string(kBeginning) + kCreated + kAliases + kThanks);
}

TEST(ResultsMailBody, HasAnEmptyListWhereNoAccountWasMade) {
    EXPECT_EQ(ResultsMailBody({}).Bytes(), std::string(kBeginning) + kAliases + kThanks);
}

TEST(ResultsMailBody, FillsSkippedLoginsToTwelveCharacters) {
    const struct {
        SString login;
        SString name;
        SString line;
    } cases[] = {
        {"elevenchars", "X", "elevenchars  (X)"},
        {"twelve-chars", "X", "twelve-chars (X)"},
        {"thirteen-char", "X", "thirteen-char (X)"},
        {"bin", "", "bin"},
        {"-a", "X\r\n.\r\nQUIT", "-a           (X??.??QUIT)"},
        {"b\r\n", ".\n", "b??          (.?)"},
    };
    for (const auto& c : cases) {
        AccountResults results;
        results.skipped_logins = c.login;
        results.skipped_names = c.name;
        EXPECT_EQ(ResultsMailBody(results).Bytes(), std::string(kBeginning) + kAliases + kSkippedBeginning +
                                                        "        " + c.line.Bytes() + "\r\n" + kSkippedEnd +
                                                        kThanks);
    }
}

}  // namespace
