// accounts [DIRECTORY [N...]]: measures how fast AddUserAccounts makes accounts for N logins (by default
// 1,000, 10,000 and 100,000), in new folders under DIRECTORY (/var/tmp). The unit is the limit: the system
// calls that the visits owe, in a bare loop, plus the same rows in one SQLite transaction. Needs root, to
// mount another "/etc/passwd" for the measuring processes and to count system calls.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>
#include <sstream>

#include "bench/bare_rows.h"
#include "bench/bare_visits.h"
#include "bench/measure.h"
#include "bench/system_calls.h"
#include "bench/throw_away_site.h"
#include "install/settings.h"
#include "install/steps.h"
#include "support/database/account.h"

namespace {

constexpr long kSpecialAccounts = 4;
constexpr double kMostLimits = 1.25;
constexpr double kMostRecord = 1.05;
constexpr int kPairs = 3;  // odd
constexpr double kMostGrowth = 1.3;
constexpr double kMostBytes = 450;
constexpr double kMostCalls = 20;

struct Case {
    const char* name;
    ThrowAwaySite::Names names;
    const char* answers;   // method, mail domains, "is this what you want"
    bool reads_the_hosts;  // the password file is "/etc/passwd"
};

constexpr Case kCases[] = {
    {"distinct names", ThrowAwaySite::Names::Distinct, "p\n\n\n", false},
    {"one name for all", ThrowAwaySite::Names::Same, "p\n\n\n", false},
    {"/etc/passwd", ThrowAwaySite::Names::Distinct, "p\n\n\n", true},
};

struct Result {
    Measurement step;  // with a record, as on a host that has the package
    Measurement visits;
    Measurement rows;
    double record_ratio = 0;  // the step's time with a record, by that without

    double Limit() const { return visits.seconds + rows.seconds; }
    double Ratio() const { return step.seconds / Limit(); }
    double CpuRatio() const { return step.cpu_seconds / (visits.cpu_seconds + rows.cpu_seconds); }
};

bool Answer(const Case& c) {
    static std::istringstream answers;
    answers.str(c.answers);
    std::cin.rdbuf(answers.rdbuf());
    if (c.reads_the_hosts) {
        gstr_PasswdFile = "/etc/passwd";
    }
    return freopen("/dev/null", "w", stdout) != nullptr;
}

/// The database already exists when the step is run in sequence.
bool MakeDatabase() {
    return SetupSpecialAccounts() && SAccountDB().AccountCount() == kSpecialAccounts;
}

bool MakeAccounts(int logins) {
    return AddUserAccounts() == 1 && SAccountDB().AccountCount() == kSpecialAccounts + logins;
}

Measurement MeasureStep(const ThrowAwaySite& site, const Case& c, int logins, ThrowAwaySite::Record record) {
    return MeasureApart([&] { return site.Enter(record) && MakeDatabase() && Answer(c); },
                        [&] { return MakeAccounts(logins); });
}

Measurement MeasureRows(const ThrowAwaySite& site) {
    const SString database = site.Folder() + "/rows";
    std::vector<AccountRows> rows;
    const auto read = [&] {
        rows = ReadRows(site.Database());
        site.WaitForWrites();
        return !rows.empty() && MakeEmpty(database);
    };
    return MeasureApart(read, [&] { return WriteRows(database, rows); });
}

/// Ends the program where the measured work failed.
Measurement Done(Measurement measurement) {
    if (measurement.is_done) return measurement;
    std::cerr << "a measurement failed\n";
    exit(1);
}

Result MeasureOnce(const RunFolder& run, const Case& c, int logins) {
    Result result;
    {
        const ThrowAwaySite site(run, logins, c.names);
        result.step = Done(MeasureStep(site, c, logins, ThrowAwaySite::Record::Kept));
        result.rows = Done(MeasureRows(site));
    }
    const ThrowAwaySite site(run, logins, c.names);
    result.visits = Done(MeasureApart([&] { return site.Enter(); }, [&] { return VisitBare(site, logins); }));
    return result;
}

double StepSeconds(const RunFolder& run, const Case& c, int logins, ThrowAwaySite::Record record) {
    const ThrowAwaySite site(run, logins, c.names);
    return Done(MeasureStep(site, c, logins, record)).seconds;
}

/// The median of an odd number of pairs of runs. The file system gets slower the fuller it is, which would
/// count against the later run of each pair: the order alternates.
double MeasureRecord(const RunFolder& run, const Case& c, int logins, int pairs) {
    std::vector<double> ratios;
    for (int i = 0; i < pairs; ++i) {
        double seconds[2];
        for (const int turn : {i % 2, 1 - i % 2}) {
            const auto record = turn == 0 ? ThrowAwaySite::Record::None : ThrowAwaySite::Record::Kept;
            seconds[turn] = StepSeconds(run, c, logins, record);
        }
        ratios.push_back(seconds[1] / seconds[0]);
    }
    std::nth_element(ratios.begin(), ratios.begin() + pairs / 2, ratios.end());
    return ratios[static_cast<size_t>(pairs) / 2];
}

/// Short runs vary too much to be measured once, and the record's cost is less than one run varies from
/// another.
Result MeasureCase(const RunFolder& run, const Case& c, int logins) {
    const int times = logins <= 1000 ? 7 : logins <= 10000 ? 3 : 1;
    std::vector<Measurement> steps;
    std::vector<Measurement> visits;
    std::vector<Measurement> rows;
    for (int i = 0; i < times; ++i) {
        const Result result = MeasureOnce(run, c, logins);
        steps.push_back(result.step);
        visits.push_back(result.visits);
        rows.push_back(result.rows);
    }
    return {Median(steps), Median(visits), Median(rows),
            MeasureRecord(run, c, logins, std::max(times, kPairs))};
}

void PrintHead() {
    printf("%-17s %7s %8s %10s %9s %8s %8s %7s %10s %11s %8s %7s\n", "case", "logins", "seconds",
           "accounts/s", "visits, s", "rows, s", "limit, s", "limits", "CPU limits", "calls/login", "B/login",
           "record");
}

double CallsPerLogin(const Result& result, int logins) {
    if (result.step.system_calls) return *result.step.system_calls / logins;
    std::cerr << "system calls cannot be counted here\n";
    exit(1);
}

void PrintRow(const Case& c, int logins, const Result& result) {
    printf("%-17s %7d %8.3f %10.0f %9.3f %8.3f %8.3f %7.2f %10.2f %11.1f %8.0f %7.3f\n", c.name, logins,
           result.step.seconds, logins / result.step.seconds, result.visits.seconds, result.rows.seconds,
           result.Limit(), result.Ratio(), result.CpuRatio(), CallsPerLogin(result, logins),
           result.step.peak_bytes / logins, result.record_ratio);
    fflush(stdout);
}

void PrintVerdict(const char* what, double value, double most) {
    printf("  %-46s %7.2f  at most %6.2f: %s\n", what, value, most, value <= most ? "reached" : "MISSED");
}

void PrintVerdicts(const Case& c, const std::map<int, Result>& results) {
    const auto& [largest, last] = *results.rbegin();
    printf("%s:\n", c.name);
    PrintVerdict(("limits at " + std::to_string(largest) + " logins").c_str(), last.Ratio(), kMostLimits);
    PrintVerdict("with a record, times without", last.record_ratio, kMostRecord);
    PrintVerdict("memory for each login, bytes", last.step.peak_bytes / largest, kMostBytes);
    PrintVerdict("system calls for each login", CallsPerLogin(last, largest), kMostCalls);
    if (results.size() > 1) {
        PrintVerdict("growth of the ratio from the fewest logins",
                     last.Ratio() / results.begin()->second.Ratio(), kMostGrowth);
    }
}

}  // namespace

int main(int count, char** arguments) {
    SystemCalls::Prepare();
    const RunFolder run(count > 1 ? arguments[1] : "/var/tmp");
    std::vector<int> sizes;
    for (int i = 2; i < count; ++i) sizes.push_back(std::max(1, atoi(arguments[i])));
    if (sizes.empty()) {
        sizes = {1000, 10000, 100000};
    }
    std::map<std::string, std::map<int, Result>> results;
    PrintHead();
    for (const int logins : sizes) {
        for (const Case& c : kCases) {
            PrintRow(c, logins, results[c.name][logins] = MeasureCase(run, c, logins));
        }
    }
    printf("\n");
    for (const Case& c : kCases) PrintVerdicts(c, results[c.name]);
    return 0;
}
