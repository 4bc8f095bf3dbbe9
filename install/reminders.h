// The tasks that are left to the administrator, shown before the start and on the last screen.
#pragma once

#include "support/text/sstring_list.h"

/// Adds a group of reminders to gstrl_Reminders: the lines, then the empty entry that closes the group.
void Remind(const SStringList& lines);
/// A file's name as a word of a command to be pasted into a shell: quoted where it holds more than letters,
/// digits and "/ . _ -", and never an option: "a;b" gives 'a;b', "-x" gives ./-x.
SString ShellWord(const SString& name);
/// Prints them all, each on an indented line, not wrapped.
void PrintReminders();
