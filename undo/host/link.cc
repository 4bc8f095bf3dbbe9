// Puts back what a link was put in place of: a program under its backup's name, a dangling link, or nothing.
#include <unistd.h>

#include "support/system/file.h"
#include "support/system/identity.h"
#include "undo/host/link_places.h"
#include "undo/host/still_link.h"
#include "undo/host/unreached.h"
#include "undo/ways.h"

namespace {

bool IsFree(const LinkPlaces& places) {
    return places.at_path == Stands::Link || places.at_path == Stands::Nothing;
}

/// Without the backup as it was.
SString Kept(const change::LinkMade& change, const LinkPlaces& places) {
    const SString fate = places.at_backup == Stands::Nothing ? "is gone" : "was changed since";
    if (places.at_path == Stands::Link) return " stays, as its backup " + change.backup + " " + fate;
    if (places.at_path == Stands::Nothing) return " is gone, and its backup " + change.backup + " " + fate;
    return " is somebody's by now; what stood there before was " + change.backup + ", which " + fate;
}

Finding LookAtBackup(const change::LinkMade& change, const LinkPlaces& places) {
    if (places.at_path == Stands::Before) {
        if (places.at_backup == Stands::Nothing) return {};
        return {Standing::Changed, change.path + " is as before; " + change.backup + " is left alone"};
    }
    if (places.at_backup != Stands::Before) return {Standing::Changed, change.path + Kept(change, places)};
    if (IsFree(places)) return {Standing::AsLeft, "Put " + change.path + " back from " + change.backup};
    return {Standing::Changed,
            change.path + " is somebody's by now; what stood there before is " + change.backup};
}

Finding LookAtOldLink(const change::LinkMade& change, const LinkPlaces& places) {
    if (places.at_path == Stands::Before) return {};
    if (IsFree(places)) {
        return {Standing::AsLeft, "Make " + change.path + " a link to " + change.old_link + " again"};
    }
    return {Standing::Changed, change.path + " is somebody's by now; it was a link to " + change.old_link};
}

Finding LookAtNothing(const change::LinkMade& change, const LinkPlaces& places) {
    if (places.at_path == Stands::Nothing) return {};
    if (places.at_path == Stands::Link) return {Standing::AsLeft, "Remove the link " + change.path};
    return {Standing::Changed, change.path + " is somebody's by now; there was nothing before"};
}

/// By what the run replaced.
Finding LookAtPath(const change::LinkMade& change, const LinkPlaces& places) {
    if (!change.backup.IsEmpty()) return LookAtBackup(change, places);
    return change.old_link.IsEmpty() ? LookAtNothing(change, places) : LookAtOldLink(change, places);
}

// --- what a killed Undo leaves

bool IsSpareLeftOver(const LinkPlaces& places) {
    return places.at_spare == Stands::Link || places.at_spare == Stands::Before;
}

/// Or a killed run whose rename was an added name first.
bool IsBackupLeftOver(const LinkPlaces& places) {
    if (places.at_path == Stands::Before && places.is_twice) return true;
    return places.at_backup == Stands::Link && places.at_path != Stands::Link;
}

/// What was put at the path since, and was taken away to look at it.
bool HasTakenAway(const LinkPlaces& places) {
    return places.at_spare == Stands::Somebodys;
}

/// Exchanged for the dangling link, it is exchanged once more.
bool MayGoBack(const change::LinkMade& change, const LinkPlaces& places) {
    return places.at_path == Stands::Nothing ||
           (places.at_path == Stands::Before && !change.old_link.IsEmpty());
}

Finding LookAtTakenAway(const change::LinkMade& change, const LinkPlaces& places) {
    const SString spare = SpareName(change.path);
    if (MayGoBack(change, places)) {
        return {Standing::AsLeft,
                "Put " + change.path + " back from " + spare + ", where an interrupted Undo has left it"};
    }
    return {Standing::Changed, change.path + " stays; an interrupted Undo has left another as " + spare};
}

Finding Look(const change::LinkMade& change, const LinkPlaces& places) {
    if (!places.held) return Unreached(change.path);
    if (HasTakenAway(places)) return LookAtTakenAway(change, places);
    Finding finding = LookAtPath(change, places);
    const bool has_left_overs = IsSpareLeftOver(places) || IsBackupLeftOver(places);
    if (!has_left_overs || finding.standing == Standing::AsLeft) return finding;
    return {Standing::AsLeft, "Remove what was left beside " + change.path};
}

void GiveBackTakenAway(const LinkPlaces& places) {
    if (places.at_path == Stands::Nothing) {
        RenameNoReplace(places.spare, places.path);
    } else {
        ExchangeNames(places.spare, places.path);
    }
}

void RemoveLeftOvers(const LinkPlaces& places) {
    if (IsSpareLeftOver(places)) RemoveFile(places.spare);
    if (IsBackupLeftOver(places)) RemoveFile(places.backup);
}

// --- putting back

bool BeginOldLink(const change::LinkMade& change, const SString& name) {
    return symlink(change.old_link.CString(), name.CString()) == 0 &&
           lchown(name.CString(), change.old_owner, change.old_group) == 0;
}

void DropOldLink(const change::LinkMade& change, const SString& name) {
    if (LinkText(name) == change.old_link) RemoveFile(name);
}

/// By an exchange, or where the file system cannot do that, with a moment in which nothing is there.
void MakeOldLink(const change::LinkMade& change, const LinkPlaces& places) {
    const SString& spare = places.spare;
    if (BeginOldLink(change, spare) && ReplaceLink(places.path, change.link, spare)) return;
    DropOldLink(change, spare);
    const bool is_made = RemoveLink(places.path, change.link, spare) && BeginOldLink(change, spare) &&
                         RenameNoReplace(spare, places.path);
    if (!is_made) DropOldLink(change, spare);
}

void PutBackup(const change::LinkMade& change, const LinkPlaces& places) {
    if (ReplaceLink(places.path, change.link, places.backup)) return;
    if (RemoveLink(places.path, change.link, places.spare)) RenameNoReplace(places.backup, places.path);
}

void PutBack(const change::LinkMade& change, const LinkPlaces& places) {
    if (!change.backup.IsEmpty()) {
        PutBackup(change, places);
    } else if (!change.old_link.IsEmpty()) {
        MakeOldLink(change, places);
    } else {
        RemoveLink(places.path, change.link, places.spare);
    }
}

}  // namespace

Finding LookAt(const change::LinkMade& change, const UndoneRun& /*run*/) {
    const AsRoot root;
    return Look(change, FindLinkPlaces(change));
}

/// What came of it is told by another look: somebody may have been quicker.
TakenBack TakeBack(const change::LinkMade& change, const UndoneRun& /*run*/) {
    const AsRoot root;
    const LinkPlaces places = FindLinkPlaces(change);
    if (Look(change, places).standing != Standing::AsLeft) return {};
    if (HasTakenAway(places)) GiveBackTakenAway(places);
    RemoveLeftOvers(FindLinkPlaces(change));
    const LinkPlaces tidy = FindLinkPlaces(change);
    const bool is_to_go_back = LookAtPath(change, tidy).standing == Standing::AsLeft;
    if (is_to_go_back) PutBack(change, tidy);
    SyncParent(places.path);
    const Finding now = Look(change, FindLinkPlaces(change));
    if (now.standing == Standing::AsBefore) return {};
    if (now.standing == Standing::AsLeft) return {false, change.path + " could not be put back"};
    return {!is_to_go_back, now.text};
}
