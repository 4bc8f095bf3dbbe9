// Reads recorded outputs of real hosts' programs from tests/data.
#pragma once

#include "support/system/descriptor.h"
#include "support/system/file.h"
#include "support/text/sstring_list.h"

/// The lines of a recorded output.
inline SStringList Recorded(const SString& name) {
    return Lines(MapFileRead(SString(TEST_DATA) + name));
}
