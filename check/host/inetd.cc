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
    if (!lines) return findings->Ok("inetd", gstr_InetdConf + " is none that can be read");
    const SStringList conflicts = InetdConflicts(*lines);
    if (conflicts.IsEmpty()) {
        findings->Ok("inetd", gstr_InetdConf + " has no service of the mail system's");
    } else {
        findings->Problem("inetd", gstr_InetdConf + " has " + conflicts.Join(", "), {},
                          LineFor(QuestionOf(QuestionId::EditInetd), "yes"));
    }
}

/// The service of a file of /etc/xinetd.d, by "id" or "service"; empty where it is disabled.
SString ActiveService(const SStringList& lines) {
    SStringList copy = lines;
    if (!copy.Grep("/^\\s*disable\\s*=\\s*yes\\s*$/").IsEmpty()) return "";
    return copy.Grep("s/^\\s*service\\s+(\\S+)\\s*\\{?\\s*$/$1/").Get(0);
}

void LookAtXinetd(Findings* findings) {
    SStringList files = ReadDir(kXinetdFolder);
    files.Sort();
    for (const SString& file : files) {
        const auto lines = ReadHostFile(file);
        const SString service = lines ? ActiveService(*lines) : SString();
        if (InetdConflicts(service + " x\n").IsEmpty()) continue;
        findings->Problem("inetd", "xinetd has " + service + " in " + file,
                          {"write disable = yes into " + ShellWord(file), "pkill -HUP -x xinetd"});
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
