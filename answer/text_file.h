// Reading a file that may hold a password.
#pragma once

#include "support/text/sstring.h"

struct TextFile {
    SString text;
    SString error;     // why it cannot be read; empty if it was
    SString exposure;  // why a password is not safe in it: it is another's, or others may read or change it
};

/// A regular file, of 1 MB at most.
TextFile ReadTextFile(const SString& path);
