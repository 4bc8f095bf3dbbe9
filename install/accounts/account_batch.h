// A transaction in which accounts are made, and recorded before it is committed.
#pragma once

#include <vector>

#include "install/record/change.h"
#include "support/database/account.h"

class AccountBatch {
  public:
    AccountBatch();
    ~AccountBatch();
    AccountBatch(const AccountBatch&) = delete;
    AccountBatch& operator=(const AccountBatch&) = delete;

    bool IsOpen() const { return transaction_.IsOpen(); }
    bool Commit();

    /// An account that the open batch makes, with the digest of its fields.
    static void Note(change::Account account);
    /// The same account, once its fields are others.
    static void NoteAgain(const change::Account& account);

  private:
    AccountTransaction transaction_;
};
