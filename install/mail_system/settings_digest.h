// Tells whether two module databases have the same settings, whatever their files' bytes.
#pragma once

#include "support/text/sstring.h"

/// A checksum over all tables and settings of a database with these bytes, in order. Empty if it is none.
SString SettingsDigest(const SString& bytes);
/// The same of a file that nobody holds, without a change to it or beside it. Empty, too, if it cannot be
/// read.
SString SettingsDigestOf(const SString& path);
