// The records of runs, as Undo reads them (install/record/record.h says how they are written). They are
// trusted because only root can have written them: refused is what others own or could write, or what has
// another name.
#pragma once

#include "install/record/text.h"
#include "support/system/descriptor.h"

struct RecordedRun {
    SString name;                      // "20261122T170405Z-4711"
    std::vector<TimedChange> changes;  // in the order in which they were made
    bool is_cut = false;               // its last line is
    std::optional<int64_t> status;     // nothing where it was killed, or could not be recorded to the end
    SString fault;                     // why its record is refused; empty if it is not
};

class Records {
  public:
    explicit Records(const SString& directory);

    /// Why no record can be read; empty where they can, or there is no such directory.
    const SString& Fault() const { return fault_; }
    bool IsThere() const { return static_cast<bool>(opened_); }
    /// Why nothing can be written there, by errno: a file system that is read-only, say; empty where it can.
    SString WriteFault() const;
    /// The runs, the oldest first.
    SStringList Names() const;
    /// Those that began after this one.
    SStringList After(const SString& run) const;
    RecordedRun Read(const SString& name) const;
    /// The key of the run's digests; empty if it is lost.
    SString KeyOf(const SString& name) const;
    /// The folder of copies, ends in "/".
    SString KeptOf(const SString& name) const { return directory_ + "/" + name + ".kept/"; }

    /// A file in the directory, made with O_CREAT. If it is not root's alone: none, and `fault` says why.
    Descriptor Open(const SString& file, int flags, SString* fault) const;
    /// Whether there is such a file, or what could not be opened.
    bool Has(const SString& file) const;

  private:
    SString directory_;
    Descriptor opened_;
    SString fault_;
};

/// The time in a run's name: "2026-11-22T17:04:05Z", as in the record; with a blank and "UTC" for people.
SString TimeOf(const SString& run);
SString PlainTimeOf(const SString& run);
