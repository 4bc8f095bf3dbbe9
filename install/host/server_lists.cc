#include "install/host/server_lists.h"

#include "install/console.h"
#include "support/text/printable.h"

namespace {

constexpr size_t kServiceWidth = 10;
constexpr size_t kNameWidth = 12;
constexpr size_t kNamesPerRow = 4;
const SString kIndent(' ', 8);

// Kernel daemons, shells, editors and window-system programs of several Unix flavours, and this program.
const char* const kNeverOffered[] = {
    "sched", "swapper", "init",     "pageout", "pagedaemon", "fsflush", "Install", "biod",    "cmdtool",
    "cron",  "csh",     "in.named", "ksh",     "listen",     "lockd",   "lpsched", "openwin", "ps",
    "sh",    "statd",   "syslogd",  "tcsh",    "vi",         "xinit",   "xnews",   nullptr};

SStringList NamesOnOffer(SStringList processes) {
    processes.Grep("s/.* //");
    processes.Sort();
    processes.Unique();
    for (const SString& name : SStringList(kNeverOffered)) processes.Delete(name);
    return processes;
}

}  // namespace

SStringList BusyServices(const SStringList& services, const SStringList& ports,
                         const SStringList& listening) {
    SStringList busy;
    for (size_t i = 0; i < services.Count() && i < ports.Count(); ++i) {
        if (listening.Contains(ports[i])) {
            busy.Push(PaddedTo(services[i], kServiceWidth) + "(port=" + ports[i] + ")");
        }
    }
    return busy;
}

SString ProcessTable(SStringList processes) {
    const SStringList names = NamesOnOffer(std::move(processes));
    SString table = kIndent;
    for (size_t i = 0; i < names.Count(); ++i) {
        const SString name = Printable(names[i], "\t");
        const bool is_last = i + 1 == names.Count();
        const bool ends_row = (i + 1) % kNamesPerRow == 0;
        table += ends_row ? name : PaddedTo(name, kNameWidth) + " ";
        if (ends_row && !is_last) table += "\n" + kIndent;
    }
    return table + "\n\n";
}
