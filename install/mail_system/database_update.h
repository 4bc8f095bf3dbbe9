// Putting a module's new configuration database into service: the site's settings are copied into it, then
// the files are exchanged.
//
// A module M has its database in use in the file M, a release's new one in M.install, and keeps the previous
// one in M.backup. A setting's address is the table's path and the key in one: "/Config/Socket" is the key
// "Socket" of the table "/Config".
#pragma once

#include "support/database/sdbfile.h"
#include "support/text/named_list.h"

/// The settings to carry over, by module, from the text of a release's preserve file. Each line is a module,
/// "/" and a setting's address: "WWW-Server/Config/Socket" gives "WWW-Server" the address "/Config/Socket". A
/// line without "/" says nothing.
SNamedStringList ReadPreserveMap(const SStringList& lines);

/// Copies every listed setting from the old database into the new one, given by its base name. The handle
/// holds the old one: nobody may change a setting that was copied before the exchange is done. A setting
/// whose table the old one lacks stays as shipped. False if one could not be read or stored (the others are
/// copied all the same), if there is no new database or it is no regular file, if the disk refuses it, or if
/// a journal beside it would get lost in a rename.
bool UpdateDatabase(const SString& new_database, Sdbfile* in_use, SStringList addresses);

enum class Exchange {
    Done,
    NotBackedUp,  // the old database stays in use
    RolledBack,   // the same
    NotRestored,  // even the roll-back was refused
};

/// Replaces FILE by FILE.install and keeps the old one as FILE.backup. At any moment, also after a kill or a
/// power failure, FILE is there and is either the old or the new one. The handle is the one that holds FILE.
///
/// A process that has the old file open (not through a symbolic link) goes on reading that, and what it tries
/// to write is refused by SQLite (SQLITE_READONLY_DBMOVED) before a journal beside the new one comes about.
Exchange ExchangeDatabase(const SString& file, const Sdbfile& in_use);
