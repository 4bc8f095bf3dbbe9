// A module's database FILE as an exchange leaves it, for the ways back of its parts.
//
//     FILE            in use: the run's new version, or the one from before
//     FILE.install    a new version; missing since the exchange
//     FILE.backup     since the exchange the version from before
#pragma once

#include <optional>

#include "undo/way_back.h"

SString NewVersion(const SString& file);
SString Backup(const SString& file);

/// Whether a journal is beside the file, of a process that was killed or that writes just now: its bytes are
/// no whole database.
bool IsHalfWritten(const SString& path);

/// The exchange of FILE that the run recorded.
std::optional<change::DatabaseExchanged> ExchangeOf(const SString& file, const UndoneRun& run);
Standing StandingOf(const change::DatabaseExchanged& change, const UndoneRun& run);

/// Whether a database can be another one into which settings of a third were carried over, some or all: what
/// differs from the one is as in the other. By their bytes; the third may be missing.
bool IsCarriedOver(const SString& bytes, const SString& delivered, const std::optional<SString>& in_use);
