#include <gtest/gtest.h>

#include "install/settings.h"
#include "install/steps.h"
#include "tests/dialogue.h"

namespace {

SString ClosingScreen() {
    const Dialogue dialogue;
    EXPECT_TRUE(WarnAdmin());
    return dialogue.Screen();
}

TEST(WarnAdmin, ShowsTheAdministrationAddresses) {
    gstr_HostName = "mail.example.com";
    gn_WWWPort = 80;
    EXPECT_EQ(ClosingScreen(),
              "\n"
              "Installation is complete.\n"
              "\n"
              "To administer tern.harbor using a World Wide Web browser such as NCSA\n"
              "Mosaic, use the URL:\n"
              "\n"
              "          http://mail.example.com\n"
              "\n"
              "To administer tern.harbor via E-mail, request account management forms from\n"
              "<Accounts@mail.example.com> and configuration forms from\n"
              "<Configuration@mail.example.com>.  The body of the message should contain a\n"
              "list of the forms you want to retrieve.  Account management forms include\n"
              "the \"Account\", \"List\", and \"SMTP aliases\" forms.  Configuration forms\n"
              "include the \"System\", \"Security\", \"SMTP\", and \"Queue\" forms.  For a\n"
              "complete list and detailed instructions, please refer to the tern.harbor\n"
              "documentation.\n"
              "\n");
}

TEST(WarnAdmin, ShowsAnotherPortInTheUrlOnly) {
    gstr_HostName = "mail.example.com";
    gn_WWWPort = 8080;
    const SString screen = ClosingScreen();
    EXPECT_TRUE(screen.Matches("\n          http://mail\\.example\\.com:8080\n\n")) << screen;
    EXPECT_TRUE(screen.Matches("<Accounts@mail\\.example\\.com>")) << screen;
    EXPECT_TRUE(screen.Matches("<Configuration@mail\\.example\\.com>")) << screen;
    gn_WWWPort = 80;
}

TEST(WarnAdmin, ShowsTheTasksInsteadInTheirOrder) {
    gstrl_Reminders = {"chmod g+s /var/spool/mail/", "",
                       "A task  whose line is longer than the paragraph's "
                       "width, which nobody wraps, as a command may stand in it",
                       ""};
    EXPECT_EQ(
        ClosingScreen(),
        "\n"
        "The installation is complete but there are some tasks that you still need\n"
        "to do.  If the system generated any warnings when it started up (or if you\n"
        "didn't start it), then you should perform the unfinished tasks, and re-run\n"
        "this installation program.\n"
        "\n"
        "The following tasks still need to be done:\n"
        "\n"
        "    chmod g+s /var/spool/mail/\n"
        "    \n"
        "    A task  whose line is longer than the paragraph's width, which nobody wraps, as a command may "
        "stand in it\n"
        "    \n"
        "\n");
    gstrl_Reminders.Reset();
}

}  // namespace
