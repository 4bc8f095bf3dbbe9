// What a new release brought for the modules' databases.
#pragma once

#include "support/text/sstring_list.h"

/// The modules of which there is a new database beside the one in use, sorted.
SStringList ModulesWithNewVersion();
/// The preserve file's text, without which none is put into service; empty if it is no regular file, or one
/// of unreasonable size.
SString PreserveText();
