// The services that an Internet daemon has, inetd or xinetd.
#include "install/host/inetd.h"

#include "answer/keys.h"
#include "check/looks.h"
#include "install/host/rewrite_note.h"
#include "install/reminders.h"
#include "install/settings.h"
#include "support/system/file.h"
#include "support/system/identity.h"

namespace {

const SString kXinetdFolder = "/etc/xinetd.d";

void LookAtInetdConf(Findings* findings) {
    const auto lines = ReadHostFile(gstr_InetdConf);
    if (!lines && IsMissing(gstr_InetdConf)) return findings->Ok("inetd", "there is no " + gstr_InetdConf);
    if (!lines) return findings->NotLookedAt("inetd", gstr_InetdConf + ", which cannot be read");
    const SStringList conflicts = InetdConflicts(*lines);
    if (conflicts.IsEmpty()) {
        findings->Ok("inetd", gstr_InetdConf + " has no service of the mail system's");
    } else {
        findings->Problem("inetd", gstr_InetdConf + " has " + conflicts.Join(", "), {},
                          LineFor(QuestionOf(QuestionId::EditInetd), "yes"));
    }
}

/// The services of a file of /etc/xinetd.d that are not disabled, each as a line of inetd.conf would begin.
SStringList ActiveInXinetd(const SStringList& lines) {
    SStringList services;
    SString service;
    for (const SString& line : lines) {
        const SString next = line.M("^\\s*service\\s+(\\S+)").Get(0);
        if (!next.IsEmpty()) {
            services.Push(service);
            service = next + " ";
        }
        if (line.Matches("^\\s*disable\\s*=\\s*yes\\s*$")) service = "";
    }
    services.Push(service);
    return services;
}

void LookAtXinetd(Findings* findings) {
    SStringList files = ReadDir(kXinetdFolder).Grep("!/\\.[^\\/]*$|~$/");  // which xinetd leaves out
    files.Sort();
    for (const SString& file : files) {
        const auto lines = ReadHostFile(file);
        const SStringList services = lines ? InetdConflicts(ActiveInXinetd(*lines)) : SStringList();
        if (services.IsEmpty()) continue;
        findings->Problem("inetd", "xinetd has " + services.Join(", ") + " in " + file,
                          {"write disable = yes for it into " + ShellWord(file), "pkill -HUP -x xinetd"});
    }
}

}  // namespace

void LookAtInetd(Findings* findings) {
    const AsRoot root;
    if (ReadNote(gstr_InetdConf).rewrite) {
        findings->Note("inetd",
                       "a run was killed while it changed " + gstr_InetdConf + "; the next one finishes it");
    }
    LookAtInetdConf(findings);
    LookAtXinetd(findings);
}
