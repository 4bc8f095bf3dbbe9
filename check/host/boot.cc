// What starts at the next boot: tern.harbor, and servers that would take its ports.
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "check/host/commands.h"
#include "check/host/units.h"
#include "check/looks.h"
#include "install/reminders.h"
#include "install/settings.h"
#include "support/system/file.h"
#include "support/system/identity.h"

namespace {

// Debian's virtual packages of the services that the mail system replaces. Who provides one by inetd starts
// nothing.
const char* const kServices = "mail-transport-agent pop3-server finger-server";

const char* const kNoComment = "\\s*[^#\\s]";

bool StartsByScript(const SString& script) {
    const SStringList levels = {"/etc/rc2.d", "/etc/rc3.d", "/etc/rc5.d"};
    return std::ranges::any_of(levels, [&](const SString& level) {
        return !ReadDir(level).Grep("/\\/S\\d\\d" + script + "$/").IsEmpty();
    });
}

bool IsEnabled(const SString& unit) {
    return LinesOf("systemctl is-enabled -- " + ShellWord(unit)).Get(0).StartsWith("enabled");
}

struct Package {
    SString name, source;
    SStringList provides, depends;
};

std::vector<Package> InstalledPackages() {
    SStringList lines = LinesOf(
        "dpkg-query --show --showformat "
        "'${db:Status-Status} ${Package}\\t${source:Package}\\t${Provides}\\t${Depends}\\n'");
    lines = lines.Grep("s/^(?:installed|unpacked|half-configured|triggers-pending|triggers-awaited) //");
    std::vector<Package> packages;
    for (const SString& line : lines) {
        const SStringList fields = line.SplitExact("\t");
        packages.push_back(
            {fields.Get(0), fields.Get(1), fields.Get(2).Split("[ ,]+"), fields.Get(3).Split("[ ,]+")});
    }
    return packages;
}

bool ProvidesAService(const Package& package) {
    const SStringList services = SString(kServices).Split(' ');
    return std::ranges::any_of(services,
                               [&](const SString& service) { return package.provides.Contains(service); });
}

/// Installed packages that are a server of one of the services, and those that they need of the same source:
/// of exim4-daemon-light, exim4-base is what starts it.
SStringList ServerPackages() {
    const std::vector<Package> installed = InstalledPackages();
    SStringList packages;
    for (const Package& server : installed) {
        if (!ProvidesAService(server)) continue;
        packages.Push(server.name);
        for (const Package& other : installed) {
            const bool is_needed = other.source == server.source && server.depends.Contains(other.name);
            if (is_needed && !packages.Contains(other.name)) packages.Push(other.name);
        }
    }
    return packages;
}

struct Starter {
    SString name;     // "postfix.service", "exim4"
    SString disable;  // the command
};

std::vector<Starter> StartersIn(const SString& package) {
    const SStringList files = LinesOf("dpkg-query --listfiles " + ShellWord(package));
    std::vector<Starter> starters;
    SStringList units = files;
    for (const SString& unit :
         units.Grep("s/^.*\\/systemd\\/system\\/([^\\/@]+\\.(?:service|socket))$/$1/")) {
        if (HasSystemd() && IsEnabled(unit))
            starters.push_back({unit, "systemctl disable " + ShellWord(unit)});
    }
    if (!starters.empty()) return starters;
    SStringList scripts = files;
    for (const SString& script : scripts.Grep("s/^\\/etc\\/init\\.d\\/([\\w.-]+)$/$1/")) {
        const bool is_shadowed = HasSystemd() && units.Contains(script + ".service");
        if (!is_shadowed && StartsByScript(script))
            starters.push_back({script, "update-rc.d " + ShellWord(script) + " disable"});
    }
    return starters;
}

void LookAtOthers(Findings* findings) {
    if (!HasCommand("dpkg-query")) {
        return findings->NotLookedAt("boot", "the host's servers, as there is no dpkg-query");
    }
    size_t count = 0;
    for (const SString& package : ServerPackages()) {
        for (const Starter& starter : StartersIn(package)) {
            ++count;
            findings->Problem("boot",
                              starter.name + " of the package " + package + " starts at the next boot",
                              starter.disable);
        }
    }
    if (count == 0) findings->Ok("boot", "no other mail server of a package starts at the next boot");
}

/// Whether a line that begins so, and is no comment, has the server program.
bool Runs(const SString& file, const SString& beginning) {
    const SString program = gstr_ProgramDir + gstr_ProductName;
    SStringList lines = Lines(MapFileRead(file)).Grep("/^" + beginning + "/");
    return std::ranges::any_of(lines, [&](const SString& line) {
        const size_t at = line.Bytes().find(program.Bytes());
        return at != std::string::npos &&
               SString(line.Bytes().substr(at + program.Length())).Matches("^([\\s\"';&]|$)");
    });
}

/// Files in the folder that run the server program.
SStringList Starting(const SString& folder, const SString& expression, const SString& beginning) {
    SStringList found;
    for (const SString& file : ReadDir(folder).Grep(expression)) {
        if (IsRegular(file) && Runs(file, beginning)) found.Push(BaseName(file, ""));
    }
    return found;
}

bool StartsTheMailSystem() {
    SStringList units;
    for (const char* folder :
         {"/etc/systemd/system", "/lib/systemd/system", "/usr/local/lib/systemd/system"}) {
        units.Push(Starting(folder, "/\\.service$/", "ExecStart\\s*="));
    }
    const SStringList scripts = Starting("/etc/init.d", "/./", kNoComment);
    return (HasSystemd() && std::ranges::any_of(units, IsEnabled)) ||
           std::ranges::any_of(scripts, StartsByScript) ||
           (access("/etc/rc.local", X_OK) == 0 && Runs("/etc/rc.local", kNoComment));
}

}  // namespace

void LookAtBoot(Findings* findings) {
    const AsRoot root;
    if (StartsTheMailSystem()) {
        findings->Ok("boot", "tern.harbor starts at the next boot");
    } else {
        findings->Problem("boot",
                          "nothing starts " + gstr_ProgramDir + gstr_ProductName + " at the next boot",
                          "make a unit or a boot script that starts it, and enable it");
    }
    LookAtOthers(findings);
}
