// Looking at and changing files by path. Nothing here prints or changes the effective user.
#pragma once

#include <cstdint>

#include "support/text/sstring_list.h"

/// Follows links. A dangling link does not exist.
bool FileExists(const SString& path);
/// Follows links. False, too, if it cannot be told: a server that died still has its files.
bool IsMissing(const SString& path);
/// Does not follow links. Also true if it cannot be told.
bool EntryExists(const SString& path);
bool IsDirectory(const SString& path);
bool IsRegular(const SString& path);
/// Whether the effective user can write. False for root, too, if the file has no write bit.
bool IsWriteable(const SString& path);
/// When it was made, in nanoseconds, which tells it from a later file with the same inode number. 0 where the
/// file system does not say (statx, Linux). Does not follow links.
int64_t BirthTime(const SString& path);
/// In bytes; -1 when it cannot be told.
int64_t FileSize(const SString& path);
bool MakeDir(const SString& path, unsigned long mode);
/// The entries as paths, without "." and "..", in no order. Empty when the directory cannot be read.
SStringList ReadDir(const SString& path);
/// Absolute, every link resolved; empty when it cannot be (POSIX realpath).
SString RealPath(const SString& path);
/// What a symbolic link says; empty if there is none.
SString LinkText(const SString& path);
bool Rename(const SString& from, const SString& to);
/// Like Rename, but never overwrites (EEXIST).
bool RenameNoReplace(const SString& from, const SString& to);
/// Both must exist. False where the file system cannot do it (renameat2 with RENAME_EXCHANGE, Linux).
bool ExchangeNames(const SString& path, const SString& other);
/// A hard link. Never overwrites.
bool AddName(const SString& path, const SString& name);
bool RemoveFile(const SString& path);
/// The whole contents; empty when it cannot be read.
SString MapFileRead(const SString& path);
/// The path's last component, without the suffix where it ends in that: BaseName("/a/b.c/", ".c") is "b".
SString BaseName(const SString& path, const SString& suffix);
/// A literal would fit both the string and the list.
inline SString BaseName(const char* path, const SString& suffix) {
    return BaseName(SString(path), suffix);
}
/// The same of every path.
SStringList BaseName(const SStringList& paths, const SString& suffix);
/// A hidden name in the path's directory: HiddenBeside("/a/b", ".new") is "/a/.b.new".
SString HiddenBeside(const SString& path, const SString& ending);
/// The name of the path's owner (group), a final link not followed. Empty if there is no such path, or no
/// name for the id.
SString FileOwner(const SString& path);
SString FileGroup(const SString& path);
/// The first of path, path1, path2 ... at which nothing exists, not even a dangling link. Empty if that
/// cannot be told.
SString FreeName(const SString& path);
