// Puts the module databases of a new release (MODULE.install) into service, keeping the settings that the
// release's preserve file lists.
#include "install/mail_system/module_databases.h"

#include <fcntl.h>

#include "install/console.h"
#include "install/mail_system/database_update.h"
#include "install/mail_system/recorded_databases.h"
#include "install/reminders.h"
#include "install/settings.h"
#include "install/steps.h"
#include "support/system/file.h"
#include "support/system/regular_file.h"
#include "support/text/printable.h"

namespace {

const SString kAccounts = "MTA-Accounts";  // the site's accounts: never replaced
constexpr size_t kMostPreserved = size_t{16} << 20;
const SString kRemindedLater =
    "You will be reminded to update it manually at the end of the installation process.";

SString ConfigDirectory() {
    return gstr_TernHarbor + "config/";
}

bool WarnNotUpdated(const SString& module) {
    Tell({"WARNING: couldn't update the configuration database for the " + module + " module.",
          "This is most likely due to a permission problem in the " + gstr_TernHarbor +
              "config directory, or a filled hard disk.",
          "After you correct the problem, run this installation program again "
          "to update the configuration database."});
    return false;
}

void RemindToInstall(const SString& module) {
    Remind({"cd " + ShellWord(gstr_TernHarbor + "config"),
            "mv " + ShellWord(module + ".install") + " " + ShellWord(module)});
}

void WarnNotBackedUp(const SString& module) {
    Tell({"WARNING: couldn't create a backup of your old " + module +
              " configuration database. The new updated database was not installed.",
          kRemindedLater});
}

void WarnRolledBack(const SString& module) {
    Tell({"WARNING: couldn't install the updated version of the " + module + " configuration database.",
          kRemindedLater});
}

void WarnNotRestored(const SString& module) {
    Tell({"WARNING: couldn't install the updated version of the " + module +
              " configuration database and then failed to restore the original from the backup.",
          "Without the configuration database properly installed, the " + module +
              " module will not be able to start.",
          "You will be reminded to install it manually at the end of the installation process."});
    gf_ShowStoppers = 1;
}

void PutIntoService(const SString& module, const Sdbfile& in_use) {
    RecordExchange(module, in_use);
    const Exchange outcome = ExchangeDatabase(ConfigDirectory() + module, in_use);
    if (outcome == Exchange::Done) return;
    if (outcome == Exchange::NotBackedUp) WarnNotBackedUp(module);
    if (outcome == Exchange::RolledBack) WarnRolledBack(module);
    if (outcome == Exchange::NotRestored) WarnNotRestored(module);
    RemindToInstall(module);
}

/// The database in use is held throughout, so that nothing is stored in it that the new one would lack.
bool Update(const SString& module, const SStringList& addresses) {
    RecordPreparation(module);
    Sdbfile in_use(module, 0);
    if (!in_use.Hold() || !UpdateDatabase(module + ".install", &in_use, addresses)) {
        return WarnNotUpdated(module);
    }
    PutIntoService(module, in_use);
    return true;
}

}  // namespace

SStringList ModulesWithNewVersion() {
    SStringList modules = BaseName(ReadDir(ConfigDirectory()), "").Grep("/.\\.install\\z/");
    modules.Grep("s/\\.install\\z//");
    modules.Delete(kAccounts);
    modules.Sort();
    return modules;
}

SString PreserveText() {
    const RegularFile file = OpenRegularFile(ConfigDirectory() + "__PRESERVE__", O_RDONLY, Links::All);
    const auto text = file ? file.descriptor.ReadAll(kMostPreserved + 1) : std::nullopt;
    return text && text->Length() <= kMostPreserved ? *text : SString();
}

bool UpdateConfiguration() {
    const SStringList modules = ModulesWithNewVersion();
    if (modules.IsEmpty()) return true;
    const SStringList entries = PreserveText().SplitExact("\n");
    if (entries.IsEmpty()) return true;
    const SNamedStringList preserved = ReadPreserveMap(entries);

    Print("Updating module configurations....\n");
    for (const SString& module : modules) {
        if (module == kAccounts) continue;
        Print("     " + Printable(module) + "\n");
        if (!Update(module, preserved.Get(module))) return false;
    }
    Print("done\n");
    return true;
}
