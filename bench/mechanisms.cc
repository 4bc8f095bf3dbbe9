// Measures the mechanisms that make the installer fast, each beside what it replaces. Needs root, to mount
// another "/etc/passwd" for this process.
#include <benchmark/benchmark.h>
#include <pwd.h>

#include <cstdint>
#include <cstring>

#include "bench/throw_away_site.h"
#include "install/accounts/login_index.h"
#include "support/database/account.h"
#include "support/system/environment.h"
#include "support/system/file.h"

namespace {

constexpr int kLogins = 10000;

SString Login(int64_t i) {
    return "user" + SString(i % kLogins);
}

// --- logins: the last of a long "/etc/passwd"

void LoginByCLibrary(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(getpwnam(Login(kLogins - 1).CString()));
}
BENCHMARK(LoginByCLibrary);

void LoginByIndex(benchmark::State& state) {
    LoginIndex index;
    for ([[maybe_unused]] auto _ : state) {
        index.Refresh();
        benchmark::DoNotOptimize(index.Find(Login(kLogins - 1)));
    }
}
BENCHMARK(LoginByIndex);

// --- accounts: the number that share a commit; 0 means a commit for each field

void StartEmpty() {
    static int number = 0;
    const SString data = GetEnv("TernHarbor") + "/" + SString(++number);
    MakeDir(data, 0750);
    MakeDir(data + "/config", 0750);
    PutEnv("TernHarbor", data);
}

void MakeAccount(int64_t i) {
    SAccountDBMod accounts;
    SAccountMod account;
    accounts.ModifyAccount("User_" + SString(i), &account);
    account.Set("SMTP-Address", Login(i) + "@mail.example.com");
    for (const char* field : {"Name", "Password", "Local-Delivery", "UNIX-UserName", "SMTP-RewriteStyle",
                              "Access-Domains", "Finger-Info"}) {
        account.Set(field, "a value");
    }
}

void AccountsInACommit(benchmark::State& state) {
    StartEmpty();
    const AccountSession session;
    int64_t number = 0;
    for ([[maybe_unused]] auto _ : state) {
        if (state.range(0) == 0) {
            MakeAccount(number++);
            continue;
        }
        AccountTransaction transaction;
        for (int64_t i = 0; i < state.range(0); ++i) MakeAccount(number++);
        transaction.Commit();
    }
    SyncAccounts();
    state.SetItemsProcessed(number);
}
BENCHMARK(AccountsInACommit)->Arg(0)->Arg(1)->Arg(10)->Arg(100)->Arg(1000);

void AccountUidOfOneName(benchmark::State& state) {
    StartEmpty();
    SAccountDBMod accounts;
    SAccountMod account;
    AccountTransaction transaction;
    for (int64_t i = 0; i < state.range(0); ++i) {
        accounts.ModifyAccount(GenerateAccountUID("John Smith"), &account);
    }
    for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(GenerateAccountUID("John Smith"));
}
BENCHMARK(AccountUidOfOneName)->Arg(100)->Arg(10000);

// --- texts

void ShiftThroughAList(benchmark::State& state) {
    SStringList whole;
    for (int64_t i = 0; i < state.range(0); ++i) whole.Push("element");
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        SStringList list = whole;
        state.ResumeTiming();
        while (!list.IsEmpty()) list.Shift();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(ShiftThroughAList)->Arg(1000)->Arg(1000000);

void PatternOnALongLine(benchmark::State& state) {
    const SString line('x', static_cast<size_t>(state.range(0)));
    for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(line.Matches("x[ab]"));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(PatternOnALongLine)->Arg(1000)->Arg(10000000);

void SearchOnALongLine(benchmark::State& state) {
    const SString line('x', static_cast<size_t>(state.range(0)));
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(memchr(line.CString(), 'z', line.Length()));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(SearchOnALongLine)->Arg(1000)->Arg(10000000);

}  // namespace

int main(int count, char** arguments) {
    const SString directory = GetEnv("TMPDIR");
    const RunFolder run(directory.IsEmpty() ? "/var/tmp" : directory);
    const ThrowAwaySite site(run, kLogins, ThrowAwaySite::Names::Distinct);
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments) || !site.Enter()) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
