// A file that appears whole or not at all: it is written under another name in the same directory, synced and
// renamed to its own, so that neither a reader nor a power failure ever meets half of it.
//
//     PendingFile file(path);
//     bool done = file.Write(text) && file.Publish();
//
// The other name is ".NAME.PROCESS-ID.NUMBER"; all that a killed process may leave behind is such a file.
#pragma once

#include <cstdint>
#include <optional>

#include "support/system/descriptor.h"

/// What a directory's entry is on its way to, and whose it is.
struct Pending {
    SString path;
    int64_t process;
};

/// Nothing where the entry's name is not a pending file's.
std::optional<Pending> PendingFrom(const SString& entry);

class PendingFile {
  public:
    /// Creates the file under its other name, with the mode less the mask. Where that fails every call is
    /// false.
    explicit PendingFile(const SString& path, mode_t mode = 0660);
    /// Removes what was not published.
    ~PendingFile();
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;

    bool IsOpen() const { return static_cast<bool>(file_); }
    /// For changes of owner and mode. Closed by Publish.
    const Descriptor& File() const { return file_; }
    bool Write(const SString& bytes);
    /// Syncs the file, renames it to its name (replacing what is there) and syncs the directory. False if any
    /// of this or an earlier Write failed; what had the name before then still has it, unless only the
    /// directory's sync failed.
    bool Publish();
    /// Exchanges names with the file that has the path, and removes that. False, with nothing changed, if
    /// it is another file or of another size by then, or if the file system cannot exchange names. File stays
    /// open.
    bool Replace(const struct stat& replaced);

  private:
    SString path_;
    SString other_name_;  // empty once it is gone
    Descriptor file_;
    bool whole_ = true;  // every Write succeeded
};
