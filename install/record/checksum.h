// Checksums that tell whether something is still as it was.
#pragma once

#include <sha2.h>

#include <string_view>

#include "support/system/descriptor.h"

/// SHA-256 in hexadecimal (FIPS 180-4); keyed: of the key and the text after it.
SString Checksum(const SString& bytes);
SString KeyedChecksum(const SString& key, const SString& bytes);
/// KeyedChecksum of a text that comes in pieces, so that nobody needs the memory for all of it.
class KeyedSum {
  public:
    explicit KeyedSum(const SString& key);
    void Add(std::string_view piece);
    SString Digits();  // once, at the end

  private:
    SHA2_CTX context_{};
};
/// Of the bytes from here to the file's end, a piece at a time. Empty on a read error.
SString Checksum(const Descriptor& file);
/// Of what has the path: a file's bytes or, not followed, a symbolic link's text. Empty for anything else,
/// and where it cannot be read.
SString ChecksumAt(const SString& path);

/// Two lower-case digits a byte.
SString Hexadecimal(const SString& bytes);
