// Listings of sockets and processes, and a process name that is typed: ports are numbers, a process is a
// number and a name, and a plain name reaches no other process. The input's first line is the name.
#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "install/host/server_lists.h"
#include "support/process/process.h"
#include "support/system/descriptor.h"

namespace {

void Require(bool holds) {
    if (!holds) abort();
}

void CheckPorts(const SStringList& ports) {
    for (const SString& port : ports) Require(port.Matches("\\A[0-9]+\\z"));
}

void CheckNamed(const SStringList& processes, const SString& name) {
    const bool is_plain = name.Matches("\\A\\w+\\z");
    for (const SString& process : ProcessesNamed(processes, name)) {
        Require(processes.Contains(process));
        Require(!is_plain || process.EndsWith((" " + name).Bytes()));
    }
}

void CheckTable(const SString& table) {
    Require(table.EndsWith("\n\n"));
    Require(!table.Matches("[^\\n\\t\\x20-\\x7e\\x80-\\xff]"));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    SStringList lines = Lines(SString(std::string(reinterpret_cast<const char*>(data), size)));
    const SString name = lines.Shift().ChopLineEnd();
    for (const auto parse : {PortsFromNetstat, PortsFromSs, PortsFromLinuxNetstat}) CheckPorts(parse(lines));
    const SStringList processes = ProcessesFromPs(lines);
    for (const SString& process : processes) Require(process.Matches("\\A[0-9]+ \\S+\\z"));
    for (const SString& user : UsersFromPs(lines)) Require(user.Matches("\\A[0-9]+ [0-9]+\\z"));
    CheckNamed(processes, name);
    CheckTable(ProcessTable(processes));
    return 0;
}
