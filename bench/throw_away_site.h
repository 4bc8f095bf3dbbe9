// A site for one measurement: logins with homes and maildrop files, and the mail system's directories, in a
// fresh folder that is removed at the end.
#pragma once

#include "support/sstring.h"

class ThrowAwaySite {
  public:
    enum class Names { Distinct, Same };
    ThrowAwaySite(const SString& parent, int logins, Names names);
    ~ThrowAwaySite();
    ThrowAwaySite(const ThrowAwaySite&) = delete;
    ThrowAwaySite& operator=(const ThrowAwaySite&) = delete;

    /// Makes this process see the site's logins as the host's, and work for the site as the mail owner.
    bool Enter() const;

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
