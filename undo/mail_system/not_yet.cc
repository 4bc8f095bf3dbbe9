// Stands in for the ways back of the mail system's own changes until they are there.
#include "undo/ways.h"

#define NOT_YET(kind)                                                      \
    Finding LookAt(const kind& /*change*/, const UndoneRun& /*run*/) {     \
        return {Standing::Unknown, "a change of the mail system"};         \
    }                                                                      \
    TakenBack TakeBack(const kind& /*change*/, const UndoneRun& /*run*/) { \
        return {};                                                         \
    }

NOT_YET(change::DatabasePrepared)
NOT_YET(change::DatabaseExchanged)
NOT_YET(change::DatabaseMade)
NOT_YET(change::SettingChanged)
NOT_YET(change::AccountsMade)
NOT_YET(change::AccountEdited)
NOT_YET(change::MessageQueued)
NOT_YET(change::NoticesLeft)
NOT_YET(MaildropsGiven)
