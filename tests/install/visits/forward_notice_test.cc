#include "install/visits/forward_notice.h"

#include <gtest/gtest.h>

namespace {

const SString kHost = "mail.example.com";

TEST(ForwardMessages, ReadAsALetter) {
    EXPECT_EQ((pz_ForwardMessage1 + kHost + pz_ForwardMessage2).Bytes(),
              "\t**************************************************\r\n"
              "\t***  YOUR \".forward\" FILE IS NO LONGER ACTIVE  ***\r\n"
              "\t**************************************************\r\n"
              "\r\n"
              "The tern.harbor mail system has been installed on mail.example.com.\r\n"
              "\r\n"
              "Mail forwarding in the new system is implemented in a different manner\r\n"
              "than with \".forward\" files.  The new system supports any combination\r\n"
              "of the following:\r\n"
              "\r\n"
              "\t- delivering messages to your UNIX mailbox\r\n"
              "\r\n"
              "\t- forwarding your mail to one or more other\r\n"
              "\t  E-mail addresses\r\n"
              "\r\n"
              "\t- sending \"vacation\" notices\r\n"
              "\r\n"
              "\t- filtering mail using procmail, filter, etc.\r\n"
              "\r\n"
              "Right now your account is set up to retain all your mail in your UNIX\r\n"
              "mailbox.  If you want to activate vacation notifications, or forward\r\n"
              "copies of your mail elsewhere, follow the instructions in the message\r\n"
              "you received with the subject, \"Greeting (your name)\".\r\n"
              "\r\n"
              "We hope you enjoy the mail system interface (via the World Wide Web and\r\n"
              "fill-in-the-blank E-mail forms) and the available mail account delivery\r\n"
              "options once you have had a chance to try them out.\r\n"
              "\r\n");
}

TEST(ForwardNotice, IsAShortDatedNote) {
    EXPECT_EQ(ForwardNotice(kHost).Text().S("\nDate: [^\n]+\n", "\nDate: DATE\n").Bytes(),
              "##### Important Notice #####\n"
              "\n"
              "Date: DATE\n"
              "\n"
              "A new mail system, named tern.harbor, has been installed on\n"
              "mail.example.com.  One effect of this transition is that\n"
              ".forward files are no longer used for mail forwarding --\n"
              "please contact your postmaster or system administrator for\n"
              "more information.\n"
              "\n");
}

TEST(ForwardNotice, TellsTheDateOfItsTextOnly) {
    const ForwardNotice notice(kHost);
    const SString text = notice.Text().S("\nDate: [^\n]+\n", "\nDate: Sat, 21 Nov 2026 14:05:09 +0100\n");
    EXPECT_EQ(notice.DateOf(text), 1795266309);
    EXPECT_FALSE(ForwardNotice("other.example.com").DateOf(text));
    for (const SString& other : {SString(), text + "\n", "\n" + text, text.S("Date: Sat", "Date: Sun"),
                                 text.S("Important", "important")}) {
        EXPECT_FALSE(notice.DateOf(other)) << other;
    }
}

}  // namespace
