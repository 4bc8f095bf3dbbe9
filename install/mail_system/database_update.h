// Bringing a module's new configuration database into service: carrying the site's settings over from the
// database in use, and exchanging the files.
//
// A module M has its database in use in the file M, a release's new one in M.install, and keeps the previous
// one in M.backup. A setting's address is the table's path and the key in one: "/Config/Socket" is the key
// "Socket" of the table "/Config".
#pragma once

#include "support/text/named_list.h"

/// The settings to carry over, by module, from the text of a release's preserve file. Each line is a module,
/// "/" and a setting's address: "WWW-Server/Config/Socket" gives "WWW-Server" the address "/Config/Socket". A
/// line without "/" says nothing.
SNamedStringList ReadPreserveMap(const SStringList& lines);

/// Copies every listed setting from the old database into the new one; both are given by base name. A setting
/// whose table the old one lacks is left as shipped. False when one could not be read or stored (the others
/// are copied all the same), when there is no new database, or when something of the databases lies beside
/// their files, which a rename would lose.
bool UpdateDatabase(const SString& new_database, const SString& old_database, SStringList addresses);

enum class Exchange {
    Done,
    NotBackedUp,  // the old database is in use
    RolledBack,   // the same
    NotRestored,  // even the roll-back was refused
};

/// Puts FILE.install in the place of FILE and keeps the latter as FILE.backup, replacing an older one. FILE
/// is never missing, and either the old or the new one, wherever the process is killed or the power fails.
Exchange ExchangeDatabase(const SString& file);
