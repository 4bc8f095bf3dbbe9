// The mail system's programs, and what the paths lead to under which other programs look for sendmail.
#include <sys/stat.h>

#include "check/host/commands.h"
#include "check/host/packages.h"
#include "check/looks.h"
#include "install/host/sendmail.h"
#include "install/reminders.h"
#include "install/settings.h"
#include "support/system/file.h"
#include "support/system/identity.h"

namespace {

const SString kSecondPath = "/usr/sbin/sendmail";
const SString kComesBack = "; an upgrade of it would put it back";

SString Emulator() {
    return gstr_ProgramDir + "bin/sendmail";
}

bool IsProgram(const SString& path) {
    struct stat status {};
    return stat(path.CString(), &status) == 0 && S_ISREG(status.st_mode) && (status.st_mode & S_IXUSR) != 0;
}

void LookAtProgram(const SString& path, const SString& what, Findings* findings) {
    const AsRoot root;
    if (IsProgram(path)) {
        findings->Ok("programs", what + " is " + path);
    } else {
        findings->Problem("programs",
                          what + " " + path + (FileExists(path) ? " cannot be run" : " is missing"),
                          "install the package that has it");
    }
}

struct Place {
    SString path;
    SString real;         // empty: leads nowhere
    SString package;      // empty: nobody's
    SString alternative;  // its name; a package's script sets it anew
    bool is_emulator = false;
    bool would_come_back = false;  // by an upgrade of the package
};

Place LookAtPlace(const SString& path) {
    Place place{path, {}, {}, {}};
    place.is_emulator = LeadsTo(path, Emulator());
    place.package = PackageOf(path);
    place.alternative = AlternativeOf(path);
    place.would_come_back = !place.package.IsEmpty() && !IsDiverted(path);
    const AsRoot root;
    place.real = RealPath(path);
    return place;
}

SString Divert(const SString& path, const SString& option) {
    return "dpkg-divert --local " + option + " --divert " + path + ".distrib --add " + path;
}

SString Described(const Place& place) {
    if (place.real.IsEmpty()) return place.path + " leads nowhere";
    SString text = place.path + (place.real == place.path ? " is a program" : " leads to " + place.real);
    if (!place.package.IsEmpty()) text += ", of the package " + place.package;
    if (!place.alternative.IsEmpty()) text += ", the alternative " + place.alternative;
    return text;
}

/// No diversion keeps it from being set anew.
void ReportAlternative(const Place& place, Findings* findings) {
    const SString text = place.is_emulator ? " leads to the mail system's emulator, but is" : " is";
    findings->Note(
        "sendmail-path",
        place.path + text + " the alternative " + place.alternative +
            "; an upgrade of its package would put it back",
        "remove that package once no mail waits in its queue, or run Install after each upgrade of it");
}

/// An upgrade of its package would put the program back.
SString OnlyForNow(const Place& place) {
    return place.path + " leads to the mail system's emulator, but is of the package " + place.package +
           kComesBack;
}

/// Install replaces this one.
void ReportFirst(const Place& place, Findings* findings) {
    if (!place.alternative.IsEmpty()) return ReportAlternative(place, findings);
    const SString keeps_it = Divert(place.path, "--no-rename");
    if (place.is_emulator && !place.would_come_back) {
        findings->Ok("sendmail-path", place.path + " leads to the mail system's emulator");
    } else if (place.is_emulator) {
        findings->Problem("sendmail-path", OnlyForNow(place), keeps_it);
    } else if (place.would_come_back) {
        findings->Note("sendmail-path", Described(place) + "; Install replaces it" + kComesBack, keeps_it);
    } else {
        findings->Note("sendmail-path", Described(place) + "; Install makes it a link to the emulator");
    }
}

/// Install leaves this one, which cron and others use, alone. Before Install, a package's first path leads to
/// it: Install would take the emulator here for one there, and look for no queue.
void ReportSecond(const Place& place, bool is_installed, Findings* findings) {
    const SString link = "ln -sf " + ShellWord(Emulator()) + " " + place.path;
    const SString elsewhere = Described(place) + "; what sends mail by it does not reach tern.harbor";
    if (place.is_emulator && !place.alternative.IsEmpty()) {
        ReportAlternative(place, findings);
    } else if (place.is_emulator && place.would_come_back) {
        findings->Note("sendmail-path", OnlyForNow(place), Divert(place.path, "--no-rename"));
    } else if (place.is_emulator) {
        findings->Ok("sendmail-path", place.path + " leads to the mail system's emulator");
    } else if (place.real.IsEmpty()) {
        findings->Note("sendmail-path", Described(place) + "; what sends mail by it cannot", link);
    } else if (!is_installed) {
        findings->Note("sendmail-path", elsewhere + "; after Install, Check names the commands");
    } else if (place.would_come_back) {
        findings->Note("sendmail-path", elsewhere, {Divert(place.path, "--rename"), link});
    } else {
        findings->Note("sendmail-path", elsewhere, {"mv " + place.path + " " + place.path + ".bak", link});
    }
}

}  // namespace

void LookAtPrograms(Findings* findings) {
    LookAtProgram(gstr_ProgramDir + gstr_ProductName, "the server program", findings);
    LookAtProgram(Emulator(), "the sendmail emulator", findings);
    if (!HasCommand("dpkg-query")) {
        findings->NotLookedAt("sendmail-path", "which package it is of, as there is no dpkg-query");
    }
    const Place first = LookAtPlace(gstr_Sendmail);
    ReportFirst(first, findings);
    ReportSecond(LookAtPlace(kSecondPath), first.is_emulator, findings);
}
