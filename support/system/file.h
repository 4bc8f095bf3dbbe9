// Looking at and changing files by path. Nothing here prints or changes the effective user.
#pragma once

#include <cstdint>

#include "support/text/sstring_list.h"

/// Follows links: a dangling link is nothing.
bool FileExists(const SString& path);
/// Does not follow: true for a dangling link, and where it cannot be told.
bool EntryExists(const SString& path);
bool IsDirectory(const SString& path);
bool IsRegular(const SString& path);
/// Whether the effective user can write, and the file has any write bit at all: root, too, is told that a
/// read-only file is one.
bool IsWriteable(const SString& path);
/// In bytes; -1 when it cannot be told.
int64_t FileSize(const SString& path);
bool MakeDir(const SString& path, unsigned long mode);
/// The entries as paths, without "." and "..", in no order. Empty when the directory cannot be read.
SStringList ReadDir(const SString& path);
/// Absolute, every link resolved; empty when it cannot be (POSIX realpath).
SString RealPath(const SString& path);
bool Rename(const SString& from, const SString& to);
/// As Rename, but fails (EEXIST) where anything stands at the target.
bool RenameNoReplace(const SString& from, const SString& to);
/// A second name for the same file (a hard link); fails where anything stands at the new name.
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
/// The name of the owner (group) of what stands at the path, a final link not followed. Empty when the path
/// cannot be looked at or the id has no name.
SString FileOwner(const SString& path);
SString FileGroup(const SString& path);
/// path, or path1, path2 ... : the first at which nothing stands, not even a dangling link. Empty when that
/// cannot be told of any name.
SString FreeName(const SString& path);
