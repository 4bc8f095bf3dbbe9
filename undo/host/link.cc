// Puts back what a link was put in place of: a program under its backup's name, a dangling link, or nothing.
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstdio>

#include "support/system/file.h"
#include "support/system/identity.h"
#include "support/system/trusted_path.h"
#include "undo/host/unreached.h"
#include "undo/ways.h"

namespace {

/// Empty where the place has no link.
SString LinkText(const TrustedPlace& place) {
    std::array<char, PATH_MAX> text{};
    const ssize_t length = readlinkat(place.directory.Get(), place.name.CString(), text.data(), text.size());
    return length > 0 ? SString(std::string(text.data(), static_cast<size_t>(length))) : SString();
}

bool Exists(const TrustedPlace& place) {
    return place.Status().has_value();
}

/// The places of one change, in the same directory.
struct Places {
    std::optional<TrustedPlace> link;
    std::optional<TrustedPlace> backup;
    bool HasBackup() const { return backup && Exists(*backup); }
};

Places Find(const change::LinkMade& change) {
    Places places{FindTrusted(change.path), {}};
    if (places.link && !change.backup.IsEmpty()) places.backup = FindTrusted(change.backup);
    return places;
}

bool IsOldLink(const change::LinkMade& change, const TrustedPlace& place) {
    const auto status = place.Status();
    return !change.old_link.IsEmpty() && LinkText(place) == change.old_link && status &&
           status->st_uid == change.old_owner && status->st_gid == change.old_group;
}

Finding LookAtBackup(const change::LinkMade& change, const Places& places) {
    const SString putting = "Put " + change.path + " back from " + change.backup;
    const bool is_ours = LinkText(*places.link) == change.link;
    if (places.HasBackup() && (is_ours || !Exists(*places.link))) return {Standing::AsLeft, putting};
    if (places.HasBackup()) {
        return {Standing::Changed,
                change.path + " is somebody's by now; what stood there before is " + change.backup};
    }
    if (is_ours || !Exists(*places.link)) {
        return {Standing::Changed, change.path + " stays, as its backup " + change.backup + " is gone"};
    }
    return {};
}

Finding LookAtLink(const change::LinkMade& change, const TrustedPlace& place) {
    if (IsOldLink(change, place)) return {};
    if (!Exists(place) || LinkText(place) == change.link) {
        return {Standing::AsLeft, "Make " + change.path + " a link to " + change.old_link + " again"};
    }
    return {Standing::Changed, change.path + " is somebody's by now; it was a link to " + change.old_link};
}

Finding LookAtNothing(const change::LinkMade& change, const TrustedPlace& place) {
    if (!Exists(place)) return {};
    if (LinkText(place) == change.link) return {Standing::AsLeft, "Remove the link " + change.path};
    return {Standing::Changed, change.path + " is somebody's by now; there was nothing before"};
}

Finding Look(const change::LinkMade& change, const Places& places) {
    if (!places.link) return Unreached(change.path);
    if (!change.backup.IsEmpty()) return LookAtBackup(change, places);
    if (!change.old_link.IsEmpty()) return LookAtLink(change, *places.link);
    return LookAtNothing(change, *places.link);
}

SString UnfinishedName(const TrustedPlace& place) {
    return HiddenBeside(place.name, ".undo");
}

/// Beside it and renamed, so that the path always leads somewhere.
bool MakeOldLink(const change::LinkMade& change, const TrustedPlace& place) {
    const SString unfinished = UnfinishedName(place);
    const int directory = place.directory.Get();
    const char* name = unfinished.CString();
    unlinkat(directory, name, 0);  // what a killed run left
    return symlinkat(change.old_link.CString(), directory, name) == 0 &&
           fchownat(directory, name, change.old_owner, change.old_group, AT_SYMLINK_NOFOLLOW) == 0 &&
           renameat(directory, name, directory, place.name.CString()) == 0;
}

bool PutBack(const change::LinkMade& change, const Places& places) {
    const TrustedPlace& link = *places.link;
    if (places.backup) return Rename(places.backup->Path(), link.Path());
    if (!change.old_link.IsEmpty()) return MakeOldLink(change, link);
    return RemoveFile(link.Path());
}

}  // namespace

Finding LookAt(const change::LinkMade& change, const UndoneRun& /*run*/) {
    const AsRoot root;
    return Look(change, Find(change));
}

TakenBack TakeBack(const change::LinkMade& change, const UndoneRun& /*run*/) {
    const AsRoot root;
    const Places places = Find(change);
    if (Look(change, places).standing != Standing::AsLeft) return {};
    if (!PutBack(change, places)) return {false, change.path + " could not be put back"};
    SyncParent(places.link->Path());
    return {};
}
