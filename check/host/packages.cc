#include "check/host/packages.h"

#include "check/host/commands.h"
#include "install/reminders.h"
#include "support/system/file.h"

namespace {

SString PackageOfName(const SString& path) {
    SStringList lines = LinesOf("dpkg-query --search " + ShellWord(path));
    lines = lines.Grep("!/^(?:local )?diversion /");
    return lines.Grep("s/[:,].*//").Get(0);
}

}  // namespace

SString PackageOf(const SString& path) {
    const SString package = PackageOfName(path);
    // Packages from before the merge of /bin into /usr/bin have the short name.
    const bool may_be_short = package.IsEmpty() && path.StartsWith("/usr/");
    return may_be_short ? PackageOfName(path.S("^/usr", "")) : package;
}

// Its files name each link in a line of its own.
SString AlternativeOf(const SString& path) {
    for (const SString& file : ReadDir("/var/lib/dpkg/alternatives")) {
        if (Lines(MapFileRead(file)).Contains(path + "\n")) return BaseName(file, "");
    }
    return "";
}

bool IsDiverted(const SString& path) {
    return !LinesOf("dpkg-divert --listpackage " + ShellWord(path)).IsEmpty();
}
