// Gives a directory back the mode that it had.
#include <sys/stat.h>

#include "support/system/identity.h"
#include "support/system/trusted_path.h"
#include "undo/host/unreached.h"
#include "undo/octal.h"
#include "undo/ways.h"

namespace {

constexpr mode_t kPermissions = 07777;

Finding Compare(const change::ModeSet& change, const Descriptor& directory) {
    const auto status = directory.Stat();
    if (!status) return Unreached(change.path);
    const mode_t now = status->st_mode & kPermissions;
    if (now == change.before.bits) return {};
    if (now == change.after.bits) {
        return {Standing::AsLeft, "Give " + change.path + " its mode " + Octal(change.before.bits) + " back"};
    }
    return {Standing::Changed, "The mode of " + change.path + " is " + Octal(now) + " by now; it was " +
                                   Octal(change.before.bits) + ", and the run made it " +
                                   Octal(change.after.bits)};
}

}  // namespace

Finding LookAt(const change::ModeSet& change, const UndoneRun& /*run*/) {
    const AsRoot root;
    const Descriptor directory = OpenTrustedDirectory(change.path);
    return directory ? Compare(change, directory) : Unreached(change.path);
}

TakenBack TakeBack(const change::ModeSet& change, const UndoneRun& /*run*/) {
    const AsRoot root;
    const Descriptor directory = OpenTrustedDirectory(change.path);
    const Finding now = directory ? Compare(change, directory) : Unreached(change.path);
    if (now.standing == Standing::AsBefore) return {};
    if (now.standing == Standing::Changed) return {false, now.text};
    if (now.standing == Standing::AsLeft && fchmod(directory.Get(), change.before.bits) == 0) return {};
    return {false, "The mode of " + change.path + " could not be set: chmod " + Octal(change.before.bits)};
}
