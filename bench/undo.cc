// undo [DIRECTORY [N]]: measures how fast Undo takes back the run that made accounts for N logins (by default
// 100,000), with and without those accounts, in new folders under DIRECTORY (/var/tmp). The unit is the run
// itself, measured just before. Needs root, to mount another "/etc/passwd" for the measuring processes.
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <sstream>

#include "bench/measure.h"
#include "bench/system_calls.h"
#include "bench/throw_away_site.h"
#include "install/record/record.h"
#include "install/settings.h"
#include "install/steps.h"
#include "support/database/account.h"
#include "support/system/file.h"
#include "support/system/identity.h"
#include "undo/later_runs.h"
#include "undo/one_run.h"
#include "undo/undone.h"

namespace {

constexpr double kMostRuns = 1;

SString Runs(const ThrowAwaySite& site) {
    return site.Folder() + "/runs";
}

bool IsSilent() {
    return freopen("/dev/null", "w", stdout) != nullptr;
}

/// Half of the logins have maildrops; each is given back by Undo then.
bool PrepareRun(const ThrowAwaySite& site, int logins) {
    for (int i = 0; i < logins; i += 2) chmod(site.MaildropFile(i).CString(), 0600);
    MakeDir(Runs(site), 0700);
    static std::istringstream answers("p\n\n\n");
    std::cin.rdbuf(answers.rdbuf());
    if (!site.Enter() || !IsSilent()) return false;
    NameRecord(Runs(site));
    return SetupSpecialAccounts();
}

bool Run() {
    const bool is_done = AddUserAccounts() == 1;
    EndRecord(0);
    return is_done;
}

/// From reading the record to the report.
bool Undo(const ThrowAwaySite& site, const UndoOptions& options) {
    const AsRoot root;
    const Records records(Runs(site));
    const RecordedRun run = records.Read(records.Names().Get(0));
    const Undone undone = ReadUndone(records, run.name);
    const LaterRuns later(records, run.name);
    Options all;
    all.yes = true;
    all.undo = options;
    return TakeBackRun(records, run, undone, later, all) == 0;
}

/// A later process sees what was taken back.
bool IsBack(const ThrowAwaySite& site, const UndoOptions& options) {
    struct stat status {};
    const bool is_given_back =
        stat(site.MaildropFile(0).CString(), &status) == 0 && (status.st_mode & 0777) == 0600;
    return is_given_back && !EntryExists(site.Home(0) + "/.forward.NOTICE") &&
           EntryExists(site.Database()) != options.accounts;
}

void Measure(const RunFolder& folder, int logins, const UndoOptions& options) {
    const ThrowAwaySite site(folder, logins, ThrowAwaySite::Names::Distinct);
    const Measurement run = MeasureApart([&] { return PrepareRun(site, logins); }, Run);
    site.WaitForWrites();
    const Measurement undo =
        MeasureApart([&] { return site.Enter() && IsSilent(); }, [&] { return Undo(site, options); });
    if (!run.is_done || !undo.is_done || !IsBack(site, options)) {
        std::cerr << "a measurement failed\n";
        exit(1);
    }
    const double ratio = undo.seconds / run.seconds;
    printf("%-22s %7d %8.3f %8.3f %7.2f  at most %5.2f: %s\n", options.accounts ? "Undo --accounts" : "Undo",
           logins, run.seconds, undo.seconds, ratio, kMostRuns, ratio < kMostRuns ? "reached" : "MISSED");
    fflush(stdout);
}

}  // namespace

int main(int count, char** arguments) {
    SystemCalls::Prepare();
    const RunFolder folder(count > 1 ? arguments[1] : "/var/tmp");
    const int logins = count > 2 ? std::max(1, atoi(arguments[2])) : 100000;
    printf("%-22s %7s %8s %8s %7s\n", "case", "logins", "run, s", "undo, s", "runs");
    Measure(folder, logins, {});
    Measure(folder, logins, {.accounts = true});
    return 0;
}
