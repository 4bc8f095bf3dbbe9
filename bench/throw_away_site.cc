// Makes the site's folders and logins, and enters it in a mount namespace.
#include "bench/throw_away_site.h"

#include <fcntl.h>
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "install/record/record.h"
#include "install/settings.h"
#include "support/system/descriptor.h"
#include "support/system/environment.h"
#include "support/system/file.h"
#include "support/system/identity.h"

namespace {

constexpr unsigned kMailOwner = 64999;
constexpr unsigned kUsersGroup = 100;
constexpr unsigned kFirstUid = 200000;

SString Login(int number) {
    return "user" + SString(number);
}

void GiveTo(const SString& path, unsigned uid, unsigned gid, unsigned mode) {
    if (chown(path.CString(), uid, gid) != 0 || chmod(path.CString(), mode) != 0) {
        std::cerr << "cannot prepare " << path << "\n";
        exit(1);
    }
}

void Write(const SString& path, const char* text) {
    std::ofstream(path.Bytes()) << text;
}

SString MakeFolder(const SString& parent) {
    std::string path = std::filesystem::absolute(parent.Bytes()) / "accounts.XXXXXX";  // as homes are
    if (mkdtemp(path.data()) == nullptr) {
        std::cerr << "cannot make a folder in " << parent << "\n";
        exit(1);
    }
    GiveTo(SString(path), 0, 0, 0755);
    return SString(path);
}

}  // namespace

RunFolder::RunFolder(const SString& parent) : path_(MakeFolder(parent)) {}

RunFolder::~RunFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_.Bytes(), ignored);
}

ThrowAwaySite::ThrowAwaySite(const RunFolder& run, int logins, Names names)
    : folder_(MakeFolder(run.Path())) {
    MakeDirectories();
    MakeLogins(logins, names);
    WaitForWrites();
}

void ThrowAwaySite::WaitForWrites() const {
    syncfs(Descriptor::Open(folder_, O_RDONLY).Get());
}

SString ThrowAwaySite::Home(int login) const {
    return folder_ + "/home/" + Login(login);
}

SString ThrowAwaySite::MaildropFile(int login) const {
    return folder_ + "/mail/" + Login(login);
}

unsigned ThrowAwaySite::Uid(int login) {
    return kFirstUid + static_cast<unsigned>(login);
}

void ThrowAwaySite::MakeDirectories() const {
    for (const char* name : {"/home", "/mail"}) MakeDir(folder_ + name, 0755);
    MakeDir(folder_ + "/runs", 0700);
    for (const char* name : {"/data", "/data/config", "/data/control", "/data/messages", "/data/deferred"}) {
        MakeDir(folder_ + name, 0750);
        GiveTo(folder_ + name, kMailOwner, kMailOwner, 0750);
    }
}

void ThrowAwaySite::MakeLogins(int logins, Names names) const {
    const unsigned mail_group = getgrnam("mail")->gr_gid;
    std::ofstream passwd(Passwd().Bytes());
    for (int i = 0; i < logins; ++i) {
        const SString name =
            names == Names::Same ? SString("John Smith") : "John Smith the " + SString(i) + "th";
        passwd << Login(i) << ":x:" << Uid(i) << ":" << kUsersGroup << ":" << name << ":" << Home(i)
               << ":/bin/sh\n";
        MakeDir(Home(i), 0755);
        if (i % 10 == 0) {
            Write(Home(i) + "/.plan", "To be away in July.\nTo be back in August.\n");
        }
        GiveTo(Home(i), Uid(i), kUsersGroup, 0755);
        if (i % 2 == 0) {
            Write(MaildropFile(i), "");
            GiveTo(MaildropFile(i), Uid(i), mail_group, 0660);
        }
    }
}

bool ThrowAwaySite::Enter(Record record) const {
    if (unshare(CLONE_NEWNS) != 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount(Passwd().CString(), "/etc/passwd", nullptr, MS_BIND, nullptr) != 0) {
        return false;
    }
    gstr_HostName = "mail.example.com";
    gstr_DomainName = "example.com";
    gstr_TernHarbor = folder_ + "/data/";
    gstr_MaildropDir = folder_ + "/mail/";
    gstr_PasswdFile = Passwd();
    gn_MailUID = kMailOwner;
    gn_MailGID = kMailOwner;
    PutEnv("TernHarbor", folder_ + "/data");
    PutEnv("ModuleName", "Install");
    PutEnv("HostName", gstr_HostName);
    PutEnv("DomainName", gstr_DomainName);
    umask(007);
    NameRecord(record == Record::Kept ? folder_ + "/runs" : SString());
    return BecomeMailOwner("mail", kMailOwner, kMailOwner);
}
