// What the record says of a module's database before it is changed. All of it as the effective user, the
// databases' owner.
#pragma once

#include "support/database/sdbfile.h"

/// FILE.install and FILE.backup as they are now. Nobody in this process may hold FILE: they may be other
/// names of it.
void RecordPreparation(const SString& module);
/// FILE and FILE.install, which are exchanged next. The handle holds FILE.
void RecordExchange(const SString& module, const Sdbfile& in_use);
/// A table that is opened for writing next, if that makes it.
void RecordTable(const SString& module, const SString& table);
/// A value of an open table that is set next.
void RecordSetting(const SString& module, const SString& table, const Sdbfile& opened, const SString& key,
                   const SStringList& values);
