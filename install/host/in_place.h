// Replacing the bytes of a file in place. Everything goes by descriptors, so that what was looked at is what
// is changed; all of it as root.
#pragma once

#include "support/system/regular_file.h"

struct Original {
    RegularFile file;  // stays open, so that checks and mode changes reach this very file
    SString bytes;

    mode_t Mode() const;
};

/// Nothing if the path is no readable regular file.
std::optional<Original> OpenOriginal(const SString& path, Links links = Links::All);

/// Adds write permission for a scope, unless the file has it.
class WriteAccess {
  public:
    WriteAccess(const SString& path, const Original& original);
    ~WriteAccess() { GiveBack(); }
    WriteAccess(const WriteAccess&) = delete;
    WriteAccess& operator=(const WriteAccess&) = delete;
    bool IsGranted() const { return had_it_ || added_; }
    /// Whether the file has its old mode again; the scope's end tries once more.
    bool GiveBack();

  private:
    bool Change(mode_t added) const;

    const Original& original_;
    bool had_it_;
    bool added_;
};

/// Takes away the write permission that a killed run had added to this mode.
bool PutModeBack(const Original& found, mode_t mode);

/// Not truncated yet. None unless it is the file that was read, with the bytes that were read.
Descriptor OpenForWriting(const SString& path, const Original& original);

enum class Written { Text, Otherwise, Neither };

/// Gives the file this text or, where that fails, the other one; either is on the disk then.
Written WriteEither(const Descriptor& file, const SString& text, const SString& otherwise);
