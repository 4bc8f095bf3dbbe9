// A message that the run queued: withdrawn when asked for, as long as nobody has changed it. What a killed
// run left of one that it did not finish goes in any case.
#include "install/record/checksum.h"
#include "support/mail/queue.h"
#include "support/system/file.h"
#include "support/system/pending_file.h"
#include "support/text/printable.h"
#include "undo/ways.h"

namespace {

using change::MessageQueued;

struct Control : SControl {
    explicit Control(const MessageQueued& change) { PutFilename(change.control); }
};

SString Stem(const MessageQueued& change) {
    return BaseName(change.control, "-Control");
}

/// Files on their way to this path, which has the run's process id in its name.
SStringList PendingFor(const SString& path) {
    SStringList found;
    for (const SString& entry : ReadDir(path.S("[^/]+$", ""))) {
        const auto pending = PendingFrom(entry);
        if (pending && pending->path == path) found.Push(entry);
    }
    return found;
}

/// Header and body are nobody's message as long as the control file is on its way.
SStringList Unfinished(const MessageQueued& change) {
    if (EntryExists(change.control)) return {};
    const SStringList control = PendingFor(change.control);
    SStringList files;
    for (const SString& path : change.text) {
        files.Push(PendingFor(path));
        if (!control.IsEmpty() && EntryExists(path)) files.Push(path);
    }
    files.Push(control);  // last: it tells that the others are nobody's
    return files;
}

/// The mail system may put what it cannot deliver yet into DATA/deferred/MODULE/; empty if it did not.
SString DeferredControl(const MessageQueued& change) {
    for (const SString& module : ReadDir(change.control.S("control/[^/]+$", "deferred"))) {
        SString path = module + "/" + BaseName(change.control, "");
        if (EntryExists(path)) return path;
    }
    return "";
}

Finding LookAtTaken(const MessageQueued& change, const UndoneRun& run) {
    const SString deferred = DeferredControl(change);
    if (deferred.IsEmpty()) return {};
    return {run.options.accounts ? Standing::Changed : Standing::Kept,
            "The mail system has deferred the message " + Printable(Stem(change)) +
                ", which stays: " + Printable(deferred)};
}

bool IsAsLeft(const MessageQueued& change, const UndoneRun& run, const SString& bytes) {
    return KeyedChecksum(run.key, bytes) == change.digest;
}

/// The files by which an administrator finds what is no longer as it was; which of them it is, one digest
/// over all does not tell.
SString WhatChanged(const MessageQueued& change) {
    const SString control = Printable(change.control);
    if (change.text.IsEmpty()) return control + " was changed since, and stays";
    for (const SString& path : change.text) {
        if (!EntryExists(path)) return control + " stays, as its text is gone: " + Printable(path);
    }
    const SString directory = Printable(change.text.Get(0).S("[^/]+$", ""));
    return control + " or its text in " + directory + " was changed since, and stays";
}

/// Nobody has, where the mail system was taking the message away meanwhile, the control file first.
Finding LookAtChanged(const MessageQueued& change, const UndoneRun& run) {
    const SString text = WhatChanged(change);
    if (!EntryExists(change.control)) return LookAtTaken(change, run);
    return {Standing::Changed, text};
}

Finding LookAtQueued(const MessageQueued& change, const UndoneRun& run) {
    const SString message = "the message " + Printable(Stem(change));
    if (!run.options.accounts) {
        return {Standing::Kept, "In the queue stays " + message + " (--accounts withdraws it)"};
    }
    if (run.key.IsEmpty()) {
        return {Standing::Unknown,
                "Whether " + message + " changed since cannot be told, as the record's key is lost: kept"};
    }
    const auto bytes = Control(change).ReadMessage();
    if (!bytes || !IsAsLeft(change, run, *bytes)) return LookAtChanged(change, run);
    return {Standing::AsLeft, "Withdraw " + message};
}

}  // namespace

Finding LookAt(const MessageQueued& change, const UndoneRun& run) {
    if (EntryExists(change.control)) return LookAtQueued(change, run);
    if (Unfinished(change).IsEmpty()) return LookAtTaken(change, run);
    return {Standing::AsLeft,
            "Remove what is there of the message " + Printable(Stem(change)) + ", which was not finished"};
}

TakenBack TakeBack(const MessageQueued& change, const UndoneRun& run) {
    for (const SString& file : Unfinished(change)) RemoveFile(file);
    const auto is_meant = [&](const SString& bytes) { return IsAsLeft(change, run, bytes); };
    Finding finding = LookAt(change, run);
    if (finding.standing == Standing::AsLeft) {
        if (Control(change).RemoveMessageIf(is_meant)) return {};
        finding = LookAt(change, run);  // it was taken or changed meanwhile, or the lock could not be had
    }
    if (finding.standing == Standing::AsBefore) return {};
    if (finding.standing != Standing::AsLeft) return {true, LeftOf(finding)};
    return {false, Printable(change.control) + " could not be withdrawn: the queue is in use"};
}
