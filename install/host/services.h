// Adding the mail system's services to the host's services file: the workers of AddServices.
#pragma once

#include "support/text/sstring_list.h"

/// One line of the services file, without its line end: "smtp       25/tcp".
SString ServiceEntry(const SString& name, const SString& port);
/// The entries of the services whose names the resolver does not know, whatever port it has for them. Names
/// and ports go index for index.
SStringList MissingServices(SStringList names, SStringList ports);
/// The lines of a services file, with the entries after its leading comments.
SStringList WithServices(SStringList lines, const SStringList& entries);
/// Adds the entries to gstr_ServicesFile, as root and not to be interrupted; then the effective user is
/// gn_MailUID. The failures are those of RewriteHostFile.
bool UpdateServicesFile(const SStringList& entries);
