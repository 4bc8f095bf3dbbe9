#include "support/process/proc.h"

#include <fcntl.h>

#include "support/process/bounded.h"
#include "support/system/descriptor.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr size_t kMostText = 4096;
constexpr std::chrono::milliseconds kForAll{1000};
constexpr std::chrono::milliseconds kForOne{100};

/// Each argument ends with a NUL, unless the process has written something else there.
SStringList ArgumentsIn(SString line) {
    if (line[-1] == '\0') line.Chop();
    return line.SplitExact(SString(std::string_view("\0", 1)));
}

SStringList ArgumentLines(const std::vector<int64_t>& ids) {
    SStringList lines;
    for (const int64_t id : ids) lines.Push(ProcText(id, "cmdline"));
    return lines;
}

}  // namespace

SString ProcText(int64_t id, const char* name) {
    const auto file = Descriptor::Open("/proc/" + SString(id) + "/" + name, O_RDONLY);
    return file ? file.ReadAll(kMostText).value_or("") : "";
}

std::vector<SStringList> CommandLines(const std::vector<int64_t>& ids) {
    std::vector<SStringList> commands(ids.size());
    if (const auto lines = ResultWithin(kForAll, [&] { return ArgumentLines(ids); })) {
        for (size_t i = 0; i < ids.size(); ++i) commands[i] = ArgumentsIn(lines->Get(static_cast<int>(i)));
        return commands;
    }
    const auto end = Clock::now() + kForAll;
    for (size_t i = 0; i < ids.size() && Clock::now() < end; ++i) {
        const auto line = ResultWithin(kForOne, [&] { return ArgumentLines({ids[i]}); });
        if (line) commands[i] = ArgumentsIn(line->Get(0));
    }
    return commands;
}
