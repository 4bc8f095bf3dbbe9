#include "undo/host/link_places.h"

#include <sys/stat.h>

#include "install/record/checksum.h"
#include "support/system/file.h"
#include "support/system/regular_file.h"

namespace {

bool IsOldLink(const SString& path, const change::LinkMade& change) {
    struct stat status {};
    return lstat(path.CString(), &status) == 0 && LinkText(path) == change.old_link &&
           status.st_uid == change.old_owner && status.st_gid == change.old_group;
}

bool IsBefore(const SString& path, const change::LinkMade& change) {
    if (!change.backup.IsEmpty()) return ChecksumAt(path) == change.before;
    return !change.old_link.IsEmpty() && IsOldLink(path, change);
}

Stands StandsAt(const SString& path, const change::LinkMade& change) {
    if (path.IsEmpty() || !EntryExists(path)) return Stands::Nothing;
    if (IsBefore(path, change)) return Stands::Before;
    return LinkText(path) == change.link ? Stands::Link : Stands::Somebodys;
}

/// A killed Undo may not have given the dangling link to its owner yet. A program is somebody's there, also
/// the one from before.
Stands StandsAtSpare(const SString& path, const change::LinkMade& change) {
    if (!EntryExists(path)) return Stands::Nothing;
    const SString text = LinkText(path);
    if (!text.IsEmpty() && text == change.old_link) return Stands::Before;
    return text == change.link ? Stands::Link : Stands::Somebodys;
}

bool AreOneFile(const SString& path, const SString& other) {
    struct stat status {};
    struct stat others {};
    return lstat(path.CString(), &status) == 0 && lstat(other.CString(), &others) == 0 &&
           IsSameFile(status, others);
}

}  // namespace

LinkPlaces FindLinkPlaces(const change::LinkMade& change) {
    LinkPlaces places;
    places.held = FindTrusted(change.path);
    if (!places.held) return places;
    if (!change.backup.IsEmpty()) places.held_backup = FindTrusted(change.backup);
    places.path = places.held->Path();
    if (places.held_backup) places.backup = places.held_backup->Path();
    places.spare = SpareName(places.path);
    places.at_path = StandsAt(places.path, change);
    places.at_backup = StandsAt(places.backup, change);
    places.at_spare = StandsAtSpare(places.spare, change);
    places.is_twice = AreOneFile(places.path, places.backup);
    return places;
}

SString SpareName(const SString& path) {
    return HiddenBeside(path, ".undo");
}
