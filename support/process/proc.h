// What /proc (proc(5)) tells of a process, whose owner chooses how long a text is, and can keep whoever reads
// it waiting.
#pragma once

#include <cstdint>
#include <vector>

#include "support/text/sstring_list.h"

/// The first 4096 bytes of a file of the process's, "status"; empty if it is gone.
SString ProcText(int64_t id, const char* name);

/// The arguments of each process, in the order of the ids, as it shows them. Empty where it is gone, or could
/// not be read in time: within a second for all or, where one takes longer, within a tenth of a second each,
/// as far as another second lasts.
std::vector<SStringList> CommandLines(const std::vector<int64_t>& ids);

/// The same as the `command` of each, by its `id`.
template <typename Process>
void ReadCommandLines(std::vector<Process>* processes) {
    std::vector<int64_t> ids;
    for (const Process& process : *processes) ids.push_back(process.id);
    const std::vector<SStringList> commands = CommandLines(ids);
    for (size_t i = 0; i < ids.size(); ++i) (*processes)[i].command = commands[i];
}
