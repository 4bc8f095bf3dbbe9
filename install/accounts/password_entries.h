// Reads the host's password database entry by entry: all its sources (getpwent: files, NIS, directories), or
// one file in passwd(5) form. For a line such as "-name" the C library returns null pointers; such fields are
// empty here.
#pragma once

#include <sys/types.h>

#include <cstdio>
#include <memory>
#include <optional>

#include "support/text/sstring.h"

struct PasswordEntry {
    SString login;
    uid_t uid = 0;
    gid_t gid = 0;
    SString comment;
    SString home;
    SString shell = {};
};

/// One pass through the entries; getpwent allows only one at a time in a process.
class PasswordEntries {
  public:
    /// Reads all sources.
    PasswordEntries();
    /// Reads a file.
    explicit PasswordEntries(const SString& path);
    ~PasswordEntries();
    PasswordEntries(const PasswordEntries&) = delete;
    PasswordEntries& operator=(const PasswordEntries&) = delete;

    /// Whether the file could not be read to its end.
    bool HasFailed() const { return file_ && ferror(file_.get()) != 0; }
    /// False if the file could not be opened.
    bool IsOpen() const { return all_sources_ || file_ != nullptr; }
    /// Nullopt after the last entry.
    std::optional<PasswordEntry> Next();

  private:
    struct Close {
        void operator()(FILE* file) const { fclose(file); }
    };
    bool all_sources_;
    std::unique_ptr<FILE, Close> file_;
};

/// The entry of a login (getpwnam); nullopt if the host does not know it.
std::optional<PasswordEntry> EntryOf(const SString& login);

/// The full name in a password entry's comment: the text before the first comma, its first "&" replaced by
/// the capitalized login. The login itself if that is empty.
SString FullName(const SString& comment, const SString& login);
