// What the run stored in a database after it made or exchanged that, and what is taken back before it,
// therefore.
#pragma once

#include "undo/way_back.h"

enum class Stored { Settings, SettingsAndTables };

/// Whether settings are still to be taken back, as it is not their turn yet or they could not be. With tables
/// also whether one is there that the run made.
bool IsMoreStoredIn(const SString& database, Stored what, const UndoneRun& run);
