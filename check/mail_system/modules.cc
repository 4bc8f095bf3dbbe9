// New databases of a release, which the next run puts into service.
#include "check/mail_system/modules.h"

#include "check/looks.h"
#include "install/mail_system/module_databases.h"
#include "install/settings.h"
#include "support/database/sdbfile.h"
#include "support/system/file.h"

SStringList DamagedNewVersions() {
    SStringList damaged;
    for (const SString& module : ModulesWithNewVersion()) {
        Sdbfile database(module + ".install", 0);
        if (database.Open("/Config", 0) == 0 && !database.IsMissing()) damaged.Push(module + ".install");
    }
    return damaged;
}

void LookAtModules(Findings* findings) {
    const SString folder = gstr_TernHarbor + "config";
    if (ReadDir(folder).IsEmpty()) {
        return findings->NotLookedAt("modules", folder + ", which is empty or closed to who looks");
    }
    const SStringList modules = ModulesWithNewVersion();
    if (modules.IsEmpty()) return findings->Ok("modules", "no new module database waits");
    if (PreserveText().IsEmpty()) {
        return findings->Problem("modules",
                                 "new databases wait for " + modules.Join(", ") + ", but " + folder +
                                     "/__PRESERVE__ is missing, empty or closed: Install leaves them",
                                 "dpkg-reconfigure tern.harbor-install");
    }
    const SStringList damaged = DamagedNewVersions();
    if (!damaged.IsEmpty()) {
        return findings->Problem("modules", "Install ends at what cannot be read: " + damaged.Join(", "),
                                 "reinstall the package that brought it");
    }
    findings->Note("modules",
                   "new databases wait for " + modules.Join(", ") + "; Install puts them into service");
}
