// The host's password database, entry by entry: all of its sources (getpwent: files, NIS, directories), or
// one file in passwd(5) form. Entries may lack fields: for a line such as "-name" the C library hands out
// null pointers. An absent field is empty here.
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
};

/// One walk through the entries, in their order; only one at a time in a process (getpwent).
class PasswordEntries {
  public:
    /// Of all sources.
    PasswordEntries();
    /// Of a file.
    explicit PasswordEntries(const SString& path);
    ~PasswordEntries();
    PasswordEntries(const PasswordEntries&) = delete;
    PasswordEntries& operator=(const PasswordEntries&) = delete;

    /// False when the file cannot be opened.
    bool IsOpen() const { return all_sources_ || file_ != nullptr; }
    /// The next entry; nothing after the last.
    std::optional<PasswordEntry> Next();

  private:
    struct Close {
        void operator()(FILE* file) const { fclose(file); }
    };
    bool all_sources_;
    std::unique_ptr<FILE, Close> file_;
};

/// The entry of a login (getpwnam). Nothing when the host does not know it.
std::optional<PasswordEntry> EntryOf(const SString& login);

/// The person's name in a password entry's comment: what stands before the first comma, with the first "&"
/// there standing for the login, its first letter in upper case. The login itself when that leaves nothing.
SString FullName(const SString& comment, const SString& login);
