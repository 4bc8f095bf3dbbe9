#include "undo/entries.h"

#include <gtest/gtest.h>

namespace {

change::MaildropGiven Maildrop(const SString& path) {
    change::MaildropGiven given;
    given.path = path;
    return given;
}

change::NoticesLeft Notices(const SString& host, const SString& login) {
    return {host, {{login, "/home/" + login, 1001, 1001}}};
}

std::vector<Entry> Entries(const std::vector<Change>& changes) {
    std::vector<TimedChange> timed;
    for (const Change& change : changes) timed.push_back({"2026-11-22T17:04:05Z", change});
    return EntriesOf(timed);
}

TEST(EntriesOf, PutsVisitsTogether) {
    const auto entries =
        Entries({Notices("h", "anna"), Maildrop("/var/mail/anna"), Notices("h", "bruno"),
                 Maildrop("/var/mail/bruno"), change::ServerStarted{"server"}, Maildrop("/var/mail/cilla"),
                 Notices("h", "cilla"), Notices("other", "cilla")});
    ASSERT_EQ(entries.size(), 6U);
    EXPECT_EQ(InWords(entries[0]), "Left notices in 2 homes: /home/anna, /home/bruno");
    EXPECT_EQ(InWords(entries[1]), "Gave 2 maildrops to their users: /var/mail/anna, /var/mail/bruno");
    EXPECT_EQ(entries[1].line, 3U);
    EXPECT_EQ(InWords(entries[2]), "Started server");
    EXPECT_EQ(entries[2].line, 6U);
    EXPECT_EQ(InWords(entries[3]), "Gave 1 maildrop to their users: /var/mail/cilla");
}

TEST(EntriesOf, PutsAccountsOfOneStepTogether) {
    const auto entries = Entries({change::AccountsMade{{{"anna", "00"}}}, Notices("h", "anna"),
                                  change::AccountsMade{{{"bruno", "11"}}}, change::DatabaseMade{"/d", ""},
                                  change::AccountsMade{{{"Postmaster", "22"}}}});
    ASSERT_EQ(entries.size(), 4U);
    EXPECT_EQ(InWords(entries[0]), "Made 2 accounts: anna, bruno");
    EXPECT_EQ(InWords(entries[3]), "Made 1 account: Postmaster");
}

struct WordsCase {
    Change change;
    const char* words;
};

TEST(InWords, TellsEachKind) {
    const WordsCase cases[] = {
        {change::DirectoryMade{"/a", "/a.new", {}}, "Made the directory /a"},
        {change::ModeSet{"/var/mail", {01777}, {03777}}, "Gave /var/mail the mode 3777; it was 1777"},
        {change::HostFileRewritten{"/e", "/e.bak", {}, "", ""}, "Rewrote /e; its old text is /e.bak"},
        {change::LinkMade{"/l", "to", "/l.bak", "00", "", 0, 0},
         "Made /l a link to to; what stood there is /l.bak"},
        {change::LinkMade{"/l", "to", "", "", "old", 0, 0}, "Made /l a link to to; it was a link to old"},
        {change::LinkMade{"/l", "to", "", "", "", 0, 0}, "Made /l a link to to"},
        {change::DatabasePrepared{"/d", {}, {}, {}}, "Gave the site's settings to /d.install"},
        {change::DatabaseExchanged{"/d", {}, "", "", {}},
         "Exchanged /d for /d.install; the one before is /d.backup"},
        {change::DatabaseMade{"/d", ""}, "Made the database /d"},
        {change::DatabaseMade{"/d", "/T"}, "Made the table /T in /d"},
        {change::SettingChanged{"/d", "/Config", "Port", {}, {"1", "2"}},
         "Set /Config/Port in /d to \"1, 2\"; it was nothing"},
        {change::AccountsMade{{{"anna", ""}, {"bru\x1bno", ""}}}, "Made 2 accounts: anna, bru?no"},
        {change::AccountEdited{{"Postmaster", ""}, {"Password", "URL"}},
         "Changed the account Postmaster: Password, URL"},
        {change::MessageQueued{"/q/c", {}, ""}, "Queued /q/c"},
        {change::ProcessesSignalled{"TERM", {{12, "sendmail", 0, {}, ""}}},
         "Sent the signal TERM to sendmail (process 12)"},
        {change::RunEnded{2}, "Ended with status 2"},
    };
    for (const WordsCase& c : cases) EXPECT_EQ(InWords(Entries({c.change})[0]), c.words);
}

}  // namespace
