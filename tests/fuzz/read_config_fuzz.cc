// The system configuration file with any contents: a value has no blank and no NUL in it, and stands in the
// first line that begins with its key.

#include <cstdint>
#include <cstdlib>

#include "install/read_config.h"
#include "support/system/descriptor.h"

namespace {

void Require(bool holds) {
    if (!holds) abort();
}

void CheckKey(const SStringList& lines, const SString& key) {
    const SString value = ReadConfig(lines, key);
    if (value.IsEmpty()) return;
    Require(value.Split(' ') == SStringList(value) && value.Index('\0') < 0);
    for (const SString& line : lines) {
        if (!line.StartsWith(key.Bytes())) continue;
        Require(line.StartsWith((key + "=" + value).Bytes()));
        return;
    }
    abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    SStringList lines = Lines(std::string_view(reinterpret_cast<const char*>(data), size));
    for (SString& line : lines) line.ChopLineEnd();
    for (const char* key : {"DomainName", "TernHarbor", "ProgramDir", "MailboxDir", "MailUserName"}) {
        CheckKey(lines, key);
    }
    return 0;
}
