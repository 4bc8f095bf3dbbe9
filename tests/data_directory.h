// A data directory of the mail system for one test, with an empty "config"; the environment names it.
#pragma once

#include "support/system/environment.h"
#include "support/system/file.h"
#include "tests/temporary_folder.h"

class DataDirectory {
  public:
    DataDirectory() {
        MakeDir(folder_ / "config", 0750);
        PutEnv("TernHarbor", Path());
    }
    SString Path() const { return folder_ / ""; }
    SString Config(const SString& name) const { return folder_ / ("config/" + name); }
    SString WriteConfig(const SString& name, const SString& bytes, mode_t mode = 0640) const {
        return folder_.Write("config/" + name, bytes, mode);
    }
    /// The names in "config", sorted, separated by blanks.
    SString Listing() const {
        SStringList names = BaseName(ReadDir(folder_ / "config"), "");
        names.Sort();
        return names.Join(" ");
    }
    void GiveTo(uid_t uid, gid_t gid) const {
        for (const char* name : {"", "config"}) {
            if (chown((folder_ / name).CString(), uid, gid) != 0) {
                abort();
            }
        }
    }

  private:
    TemporaryFolder folder_;
};
