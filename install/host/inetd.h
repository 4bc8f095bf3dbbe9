// Taking services from the Internet daemon: the workers of EditInetdConf.
//
// A line of inetd.conf(5): "smtp stream tcp nowait root /usr/sbin/tcpd in.smtpd".
#pragma once

#include "install/host/host_file.h"
#include "support/text/sstring_list.h"

/// The first words of the lines that are neither blank nor comments. A last line that is a single word
/// without a line end is no entry to the daemon either.
SStringList ActiveServices(SStringList lines);
/// The other name of a service of the mail system's there, "mail" of "smtp"; empty if it has none.
SString InetdAlias(const SString& service);
/// Those of them that the mail system takes over, under any of their names.
SStringList InetdConflicts(SStringList lines);
/// The lines, with the entries of these services commented out.
SStringList WithoutServices(SStringList lines, const SStringList& services);
/// Comments the services out in gstr_InetdConf and announces it, as root and not to be interrupted, so that
/// no signal leaves file and daemon in disagreement; then the effective user is gn_MailUID. The failures are
/// those of RewriteHostFile.
bool UpdateInetdConf(
    const SStringList& services, const Announcement& announce = [](const SString&) {});
