// Goes through the looks and prints what they found.
#include "check/check.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>

#include "check/looks.h"
#include "check/report.h"
#include "install/process_state.h"
#include "install/settings.h"
#include "install/steps.h"
#include "support/database/database_file.h"
#include "support/process/bounded.h"
#include "support/system/identity.h"

namespace {

constexpr int kProblems = 1;
constexpr int kCouldNotLook = 2;
constexpr std::chrono::seconds kPatience{60};

struct Look {
    const char* about;
    void (*look)(Findings*);
    Known needs;
};

constexpr Look kLooks[] = {
    {"directories", LookAtDirectories, Known::Owner},
    {"disk", LookAtDisks, Known::Configuration},
    {"programs", LookAtPrograms, Known::Configuration},
    {"port", LookAtPorts, Known::Nothing},
    {"inetd", LookAtInetd, Known::Nothing},
    {"sendmail", LookAtSendmail, Known::Configuration},
    {"maildrop-directory", LookAtMaildropDir, Known::Owner},
    {"logins", LookAtLogins, Known::Owner},
    {"maildrops", LookAtMaildrops, Known::Owner},
    {"modules", LookAtModules, Known::Owner},
    {"accounts", LookAtAccounts, Known::Owner},
    {"deliveries", LookAtDeliveries, Known::Owner},
    {"queue", LookAtQueue, Known::Owner},
    {"mail-system", LookAtRunning, Known::Owner},
    {"boot", LookAtBoot, Known::Configuration},
};

SStringList FoundBy(const Look& look) {
    Findings findings;
    look.look(&findings);
    return ToMessage(findings);
}

void Take(const Look& look, Known known, Findings* findings) {
    if (known < look.needs) {
        findings->NotLookedAt(look.about, "the site's facts are missing");
        return;
    }
    const auto found = ResultWithin(kPatience, [&] { return FoundBy(look); });
    if (found) {
        findings->Add(FindingsFrom(*found));
    } else {
        findings->NotLookedAt(look.about, "no answer within " + SString(kPatience.count()) + " seconds");
    }
}

Findings FindAll(Known known, Findings findings) {
    for (const Look& look : kLooks) Take(look, known, &findings);
    return findings;
}

std::vector<ExpectedQuestion> ExpectQuestions(Known known, Findings* findings) {
    const auto found = known < Known::Owner
                           ? std::nullopt
                           : ResultWithin(kPatience, [] { return ToMessage(LookAtQuestions()); });
    if (!found) findings->NotLookedAt("questions", "what the next run will ask");
    if (found && getuid() != 0 && getuid() != static_cast<uid_t>(gn_MailUID)) {
        findings->NotLookedAt("questions", "those after the first that depends on what only root may read");
    }
    return found ? QuestionsFrom(*found) : std::vector<ExpectedQuestion>();
}

Report LookAtAll() {
    Findings site;
    if (geteuid() != 0) site.NotLookedAt("root", "what only root may see; run Check as root for all of it");
    const Known known = LookAtSite(&site);
    Report report{FindAll(known, site), {}};
    report.questions = ExpectQuestions(known, &report.findings);
    return report;
}

int Misused() {
    std::cerr << "usage: Check [--json]\n";
    return kCouldNotLook;
}

bool IsUnreadable(const Finding& finding) {
    return finding.about == "configuration" && !finding.is_looked_at;
}

}  // namespace

int Check(const SStringList& arguments) {
    const bool is_json = arguments == SStringList("--json");
    if (!is_json && !arguments.IsEmpty()) return Misused();
    SettleProcess();
    umask(077);
    Initialize();
    OnlyLookAtDatabases();
    const Report report = LookAtAll();
    std::cout << (is_json ? JsonReport(report) : PlainReport(report)) << std::flush;
    if (!std::cout || std::ranges::any_of(report.findings.All(), IsUnreadable)) return kCouldNotLook;
    return report.findings.Count(Grade::Problem) > 0 ? kProblems : 0;
}
