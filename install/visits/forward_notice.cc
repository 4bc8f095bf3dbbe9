// The prescribed texts for users with ".forward" files.
#include "install/visits/forward_notice.h"

#include "install/console.h"
#include "support/system/clock.h"
#include "support/text/printable.h"

const char pz_ForwardMessage1[] =
    "\t**************************************************\r\n"
    "\t***  YOUR \".forward\" FILE IS NO LONGER ACTIVE  ***\r\n"
    "\t**************************************************\r\n"
    "\r\n"
    "The tern.harbor mail system has been installed on ";

const char pz_ForwardMessage2[] =
    ".\r\n"
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
    "\r\n";

namespace {

const SString kBeforeDate = "##### Important Notice #####\n\nDate: ";

}  // namespace

ForwardNotice::ForwardNotice(const SString& host)
    : body_(Format("A new mail system, named tern.harbor, has been installed on " + Printable(host) +
                       ". One effect of this transition is that .forward files are no longer used for "
                       "mail forwarding -- please contact your postmaster or system administrator for "
                       "more information.",
                   60, 0, "\n")) {}

SString ForwardNotice::Text() const {
    return kBeforeDate + RFC822Date() + AfterDate();
}

SString ForwardNotice::AfterDate() const {
    return "\n\n" + body_ + "\n";
}

std::optional<int64_t> ForwardNotice::DateOf(const SString& text) const {
    const SString after = AfterDate();
    const size_t others = kBeforeDate.Length() + after.Length();
    if (text.Length() < others || !text.StartsWith(kBeforeDate.Bytes()) || !text.EndsWith(after.Bytes())) {
        return std::nullopt;
    }
    return TimeOfRFC822Date(text.Bytes().substr(kBeforeDate.Length(), text.Length() - others));
}
