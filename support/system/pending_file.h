// A file that appears whole or not at all: it is written under another name in the same directory, synced and
// renamed to its own, so that neither a reader nor a power failure ever meets half of it.
//
//     PendingFile file(path);
//     bool done = file.Write(text) && file.Publish();
//
// The other name is ".NAME.PROCESS-ID.NUMBER"; a process that is killed may leave one behind, and nothing
// else.
#pragma once

#include "support/system/descriptor.h"

class PendingFile {
  public:
    /// Creates the file under its other name, mode 0660 less the mask. Where that fails every call is false.
    explicit PendingFile(const SString& path);
    /// Removes what was not published.
    ~PendingFile();
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;

    bool IsOpen() const { return static_cast<bool>(file_); }
    bool Write(const SString& bytes);
    /// Syncs, takes the name (replacing what stands there) and syncs the directory. False when the system
    /// refused any of it, also an earlier Write; the name then stands for what it stood for before, unless
    /// only the directory's sync was refused.
    bool Publish();

  private:
    SString path_;
    SString other_name_;  // empty once it is gone
    Descriptor file_;
    bool whole_ = true;  // every Write succeeded
};
