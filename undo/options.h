// The arguments of Undo.
#pragma once

#include <optional>

#include "undo/way_back.h"

struct Options {
    bool list = false;
    bool help = false;
    bool yes = false;
    UndoOptions undo;
    SString run;  // empty: the last one
};

/// Nothing for wrong ones.
std::optional<Options> OptionsFrom(const SStringList& arguments);
SString Usage();
