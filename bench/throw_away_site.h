// Makes a site for one measurement: logins with homes and maildrop files, and the mail system's directories.
#pragma once

#include "support/text/sstring.h"

/// The folder for a run's sites. They are removed together at its end: ext4 is several times slower shortly
/// after files were removed.
class RunFolder {
  public:
    explicit RunFolder(const SString& parent);
    ~RunFolder();
    RunFolder(const RunFolder&) = delete;
    RunFolder& operator=(const RunFolder&) = delete;
    const SString& Path() const { return path_; }

  private:
    SString path_;
};

class ThrowAwaySite {
  public:
    enum class Names { Distinct, Same };
    ThrowAwaySite(const RunFolder& run, int logins, Names names);

    enum class Record { Kept, None };
    /// Makes the site's logins the host's for this process, which becomes the mail owner.
    bool Enter(Record record = Record::None) const;

    /// Pending ones would slow the next measurement.
    void WaitForWrites() const;

    SString Folder() const { return folder_; }
    SString Passwd() const { return folder_ + "/passwd"; }
    SString Database() const { return folder_ + "/data/config/MTA-Accounts"; }
    SString Home(int login) const;
    SString MaildropFile(int login) const;
    static unsigned Uid(int login);

  private:
    void MakeDirectories() const;
    void MakeLogins(int logins, Names names) const;

    SString folder_;
};
