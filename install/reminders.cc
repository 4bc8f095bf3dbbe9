#include "install/reminders.h"

#include "install/console.h"
#include "install/settings.h"

void Remind(const SStringList& lines) {
    gstrl_Reminders.Push(lines);
    gstrl_Reminders.Push("");
}

SString ShellWord(const SString& name) {
    SString file = name.StartsWith("-") ? "./" + name : name;
    if (file.Matches("\\A[A-Za-z0-9/._-]+\\z")) return file;
    return "'" + file.S("'", "'\\''", "g") + "'";
}

void PrintReminders() {
    PrintIndented(4, gstrl_Reminders);
}
