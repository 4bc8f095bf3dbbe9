#include "install/one_copy.h"

#include "install/settings.h"
#include "support/system/run_lock.h"

std::optional<SString> AnotherCopy() {
    // Never destroyed: the accounts are still being closed when the program's other objects are gone.
    static const auto* lock = new RunLock(gstr_LockFile);
    const auto other = lock->Other();
    if (!other) return std::nullopt;
    return "Another copy of this installation program is running (process " + SString(*other) +
           "). Wait until it has finished, then run this program again.";
}
