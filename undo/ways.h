// Declares every kind's way back (way_back.h); undo/host/ and undo/mail_system/ have them, a file a kind.
#pragma once

#include "undo/way_back.h"

/// Consecutive changes of maildrops go together: there are as many as logins.
using MaildropsGiven = std::vector<change::MaildropGiven>;

Finding LookAt(const change::DirectoryMade& change, const UndoneRun& run);
TakenBack TakeBack(const change::DirectoryMade& change, const UndoneRun& run);
Finding LookAt(const change::ModeSet& change, const UndoneRun& run);
TakenBack TakeBack(const change::ModeSet& change, const UndoneRun& run);
Finding LookAt(const change::HostFileRewritten& change, const UndoneRun& run);
TakenBack TakeBack(const change::HostFileRewritten& change, const UndoneRun& run);
Finding LookAt(const change::LinkMade& change, const UndoneRun& run);
TakenBack TakeBack(const change::LinkMade& change, const UndoneRun& run);
Finding LookAt(const change::ProcessesSignalled& change, const UndoneRun& run);
TakenBack TakeBack(const change::ProcessesSignalled& change, const UndoneRun& run);
Finding LookAt(const change::ServerStarted& change, const UndoneRun& run);
TakenBack TakeBack(const change::ServerStarted& change, const UndoneRun& run);

Finding LookAt(const change::DatabasePrepared& change, const UndoneRun& run);
TakenBack TakeBack(const change::DatabasePrepared& change, const UndoneRun& run);
Finding LookAt(const change::DatabaseExchanged& change, const UndoneRun& run);
TakenBack TakeBack(const change::DatabaseExchanged& change, const UndoneRun& run);
Finding LookAt(const change::DatabaseMade& change, const UndoneRun& run);
TakenBack TakeBack(const change::DatabaseMade& change, const UndoneRun& run);
Finding LookAt(const change::SettingChanged& change, const UndoneRun& run);
TakenBack TakeBack(const change::SettingChanged& change, const UndoneRun& run);
Finding LookAt(const change::AccountsMade& change, const UndoneRun& run);
TakenBack TakeBack(const change::AccountsMade& change, const UndoneRun& run);
Finding LookAt(const change::AccountEdited& change, const UndoneRun& run);
TakenBack TakeBack(const change::AccountEdited& change, const UndoneRun& run);
Finding LookAt(const change::MessageQueued& change, const UndoneRun& run);
TakenBack TakeBack(const change::MessageQueued& change, const UndoneRun& run);
Finding LookAt(const change::NoticesLeft& change, const UndoneRun& run);
TakenBack TakeBack(const change::NoticesLeft& change, const UndoneRun& run);
Finding LookAt(const MaildropsGiven& change, const UndoneRun& run);
TakenBack TakeBack(const MaildropsGiven& change, const UndoneRun& run);
