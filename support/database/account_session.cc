// Opens the account database and notices that its file was replaced.
#include "support/database/account_session.h"

#include "support/system/regular_file.h"

namespace {

SString Path() {
    return DatabasePath("MTA-Accounts");
}

}  // namespace

AccountStore::Session::Session(OpenedDatabase database, const SString& file, bool for_writing)
    : path(file),
      is_writable(for_writing),
      is_snapshot(database.is_snapshot),
      connection(std::move(database.connection)) {
    stat(path.CString(), &opened);
}

// Writes to a file that a restored backup has replaced would be lost.
bool AccountStore::Session::IsCurrent() const {
    struct stat now {};
    return !is_snapshot && path == Path() && stat(path.CString(), &now) == 0 && IsSameFile(now, opened);
}

DatabaseState AccountStore::Session::Open(bool for_writing, std::unique_ptr<Session>* session) {
    const SString path = Path();
    OpenedDatabase database =
        for_writing ? OpenForWriting(path, kAccountFormat) : OpenForReading(path, kAccountFormat);
    const DatabaseState state = database.state;
    if (state == DatabaseState::Ready) {
        *session = std::make_unique<Session>(std::move(database), path, for_writing);
    }
    return state;
}
