#include "install/reminders.h"

#include "install/console.h"
#include "install/settings.h"

void Remind(const SStringList& lines) {
    gstrl_Reminders.Push(lines);
    gstrl_Reminders.Push("");
}

void PrintReminders() {
    PrintIndented(4, gstrl_Reminders);
}
