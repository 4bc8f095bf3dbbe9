// Outputs of real hosts' programs, kept in tests/data.
#pragma once

#include "support/descriptor.h"
#include "support/file.h"
#include "support/sstring_list.h"

/// The lines of a recorded output.
inline SStringList Recorded(const SString& name) {
    return Lines(MapFileRead(SString(TEST_DATA) + name));
}
