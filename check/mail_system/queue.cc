// The mail system's own queue: messages in it, and accounts that a message there is still to greet.
#include "support/mail/queue.h"

#include "check/looks.h"
#include "install/settings.h"
#include "support/system/file.h"
#include "support/text/counted.h"

namespace {

/// How many accounts the message greets.
size_t GreetedBy(const SString& path) {
    SControl control;
    if (!control.Read(path) || control.Get("Request-Type:").Get(0) != "Greet") return 0;
    return control.Get("Account-To:").Count();
}

}  // namespace

void LookAtQueue(Findings* findings) {
    const SString folder = gstr_TernHarbor + "control";
    if (!IsDirectory(folder)) return findings->NotLookedAt("queue", folder + " is missing or closed");
    const SStringList messages = ReadDir(folder).Grep("/\\/[^.\\/][^\\/]*-Control$/");
    if (messages.IsEmpty()) return findings->Ok("queue", "no message waits");
    size_t greeted = 0;
    for (const SString& message : messages) greeted += GreetedBy(message);
    findings->Note("queue", "waiting in " + folder + ": " + Counted(messages.Count(), "message"));
    if (greeted > 0) findings->Note("queue", "not greeted yet: " + Counted(greeted, "account"));
}
