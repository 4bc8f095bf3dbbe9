// The findings as text for people and as a JSON document for tools.
//
//     ok       configuration: /etc/tern.harbor.conf is whole
//     problem  port: 25 (smtp) is held by master, process 812, of the unit postfix@-.service
//                 do: systemctl disable --now postfix.service
#pragma once

#include "check/findings.h"

/// A line each, and one that counts them.
SString PlainReport(const Findings& findings);
/// {"findings": [{"about", "grade", "looked_at", "text", "to_do": [...]}], "notes": 1, "problems": 0}; with
/// U+FFFD for bytes that are no UTF-8.
SString JsonReport(const Findings& findings);
