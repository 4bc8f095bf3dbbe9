#include "install/read_config.h"

SString ReadConfig(const SStringList& lines, const SString& key) {
    SStringList candidates = lines;
    const SString line = candidates.Grep("/^" + key + "/").Shift();
    const SString value = line.M("^" + key + "=(\\S+)").Pop();
    return value.Index('\0') < 0 ? value : SString();
}
