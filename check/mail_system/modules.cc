// New databases of a release, which the next run puts into service.
#include "install/mail_system/module_databases.h"

#include "check/looks.h"
#include "install/settings.h"
#include "support/system/file.h"

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
    findings->Note("modules",
                   "new databases wait for " + modules.Join(", ") + "; Install puts them into service");
}
