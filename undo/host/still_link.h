// Puts something in the place of a symbolic link, or nothing, provided that it is still the link with this
// text: whatever was put there since it was looked at is in its place again afterwards. All names are in one
// directory, by paths.
#pragma once

#include "support/text/sstring.h"

/// Renames the other to the path, which leads somewhere at every moment. False with both as they were, where
/// another than the link has the path, or the file system cannot exchange names; killed before its end, it
/// leaves the link, or what the path had, under the other's name.
bool ReplaceLink(const SString& path, const SString& link, const SString& other);

/// Removes the link, by way of a name that is free. True where nothing has the path then; killed before its
/// end, it leaves the link, or what the path had, under that name.
bool RemoveLink(const SString& path, const SString& link, const SString& spare);
