// An open file descriptor that is closed with its scope, and whole reads and writes on it (POSIX).
// Everything opened here is closed on exec. Failure is in the result; errno tells why.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cstdint>
#include <optional>

#include "support/text/sstring.h"

class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int fd) : fd_(fd) {}
    Descriptor(Descriptor&& other) noexcept : fd_(other.Release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept;
    ~Descriptor() { Close(); }

    /// open(2) with O_CLOEXEC and O_NOCTTY added, taken up again after an interrupt.
    static Descriptor Open(const SString& path, int flags, mode_t mode = 0);
    static Descriptor OpenAt(int directory, const SString& name, int flags, mode_t mode = 0);

    explicit operator bool() const { return fd_ >= 0; }
    int Get() const { return fd_; }
    int Release();
    /// False when the system reports a write error only now.
    bool Close();

    std::optional<struct stat> Stat() const;
    /// All bytes from here to the end, at most limit of them; nothing on a read error.
    std::optional<SString> ReadAll(size_t limit = SIZE_MAX) const;
    bool WriteAll(const SString& bytes) const;
    bool Sync() const;

  private:
    int fd_ = -1;
};

/// Syncs a directory's entries to the disk (fsync); SyncParent those of the path's parent.
bool SyncDirectory(const SString& path);
bool SyncParent(const SString& path);
/// To be called first: a process that was started without one of the standard descriptors gets /dev/null
/// there. The next file opened would get its number, and receive what is meant for the screen. False if it
/// cannot be had.
bool OpenMissingDescriptors();
/// In a child: closes every descriptor but this one; the standard ones lead nowhere (/dev/null).
void KeepOnly(const Descriptor& kept);
/// From here on, programs that this process starts inherit only the three standard descriptors, and none of
/// those that it was itself started with.
void KeepFromChildren();
