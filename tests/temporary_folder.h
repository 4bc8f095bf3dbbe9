// A new folder for one test, removed with its contents at the end of the scope.
#pragma once

#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "support/text/sstring.h"

class TemporaryFolder {
  public:
    TemporaryFolder() {
        if (mkdtemp(path_) == nullptr) {
            perror(path_);
            abort();
        }
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// The path of this name in the folder.
    SString operator/(const SString& name) const { return SString(path_) + "/" + name; }

    /// Writes a file in the folder, with this mode regardless of the umask; returns its path.
    SString Write(const SString& name, const SString& bytes, mode_t mode = 0644) const {
        SString path = *this / name;
        std::ofstream(path.Bytes(), std::ios::binary) << bytes.Bytes();
        chmod(path.CString(), mode);
        return path;
    }

  private:
    char path_[32] = "/tmp/install-test.XXXXXX";
};
