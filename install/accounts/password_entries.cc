// Reads password entries through the C library.
#include "install/accounts/password_entries.h"

#include <pwd.h>

namespace {

PasswordEntry Copy(const struct passwd& entry) {
    return {entry.pw_name, entry.pw_uid, entry.pw_gid, entry.pw_gecos, entry.pw_dir, entry.pw_shell};
}

}  // namespace

PasswordEntries::PasswordEntries() : all_sources_(true) {
    setpwent();
}

PasswordEntries::PasswordEntries(const SString& path)
    : all_sources_(false), file_(fopen(path.CString(), "re")) {}

PasswordEntries::~PasswordEntries() {
    if (all_sources_) endpwent();
}

std::optional<PasswordEntry> PasswordEntries::Next() {
    if (!IsOpen()) return std::nullopt;
    const struct passwd* entry = all_sources_ ? getpwent() : fgetpwent(file_.get());
    if (entry == nullptr) return std::nullopt;
    return Copy(*entry);
}

std::optional<PasswordEntry> EntryOf(const SString& login) {
    const struct passwd* entry = getpwnam(login.CString());
    if (entry == nullptr) return std::nullopt;
    return Copy(*entry);
}

SString FullName(const SString& comment, const SString& login) {
    std::string name = comment.Bytes().substr(0, comment.Bytes().find(','));
    // Not S(): a "$1" in the login is plain text.
    if (size_t at = name.find('&'); at != name.npos) {
        std::string person = login.Bytes();
        if (!person.empty() && person[0] >= 'a' && person[0] <= 'z') person[0] -= 'a' - 'A';
        name.replace(at, 1, person);
    }
    return name.empty() ? login : SString(name);
}
