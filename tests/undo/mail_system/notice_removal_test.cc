#include "undo/mail_system/notice_removal.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <ctime>

#include "install/visits/forward_notice.h"
#include "support/process/shared_memory.h"
#include "support/system/file.h"
#include "tests/temporary_folder.h"

namespace {

const Identity kUser = {2001, 2001, {2001}};
const SString kHost = "mail.example.com";

class NoticeRemoval : public testing::Test {
  protected:
    NoticeRemoval() {
        chmod((folder_ / "").CString(), 0755);
        MakeDir(folder_ / "home", 0700);
        Own(folder_ / "home");
    }
    void Own(const SString& path) const { ASSERT_EQ(lchown(path.CString(), kUser.uid, kUser.gid), 0); }
    SString Put(const SString& text) const {
        const SString path = folder_.Write("home/.forward.NOTICE", text);
        Own(path);
        return path;
    }
    UsersOutcome Remove(int64_t begun, int64_t next, const SString& host = kHost) {
        ManyUsers users;
        SharedMemory<VisitProgress> progress;
        return RemoveNotice(folder_ / "home", kUser, {host, begun, next}, &users, &*progress);
    }
    UsersOutcome Remove() { return Remove(now_ - 5, now_ + 5); }
    bool IsThere() const { return EntryExists(folder_ / "home/.forward.NOTICE"); }

    TemporaryFolder folder_;
    const int64_t now_ = time(nullptr);
    const SString text_ = ForwardNotice(kHost).Text();
};

TEST_F(NoticeRemoval, RemovesTheRunsOwn) {
    EXPECT_EQ(Remove(), UsersOutcome::Nothing);
    for (const SString& text : {text_, SString()}) {
        Put(text);
        EXPECT_EQ(Remove(), UsersOutcome::Back) << text;
        EXPECT_FALSE(IsThere());
        EXPECT_EQ(Remove(), UsersOutcome::Nothing);
    }
}

TEST_F(NoticeRemoval, KeepsWhatSomebodyChanged) {
    const SString longer = text_ + "mine\n";
    for (const SString& text : {longer, SString("mine\n"), text_.S("Date: [^\n]*", "Date: today"),
                                ForwardNotice("other.example.com").Text()}) {
        Put(text);
        EXPECT_EQ(Remove(), UsersOutcome::Changed) << text;
        EXPECT_TRUE(IsThere());
    }
}

TEST_F(NoticeRemoval, SaysNothingOfOtherRunsAndOlderFiles) {
    Put(text_);
    EXPECT_EQ(Remove(now_ + 100, now_ + 200), UsersOutcome::Nothing);  // of an earlier run
    EXPECT_EQ(Remove(now_ - 200, now_ - 100), UsersOutcome::Nothing);  // of a later one
    Put("mine\n");
    EXPECT_EQ(Remove(now_ + 100, now_ + 200), UsersOutcome::Nothing);
    Put("");
    EXPECT_EQ(Remove(now_ + 100, now_ + 200), UsersOutcome::Nothing);
    EXPECT_TRUE(IsThere());
}

TEST_F(NoticeRemoval, KeepsWhatIsNotTheUsersPlainFile) {
    const SString path = Put(text_);
    ASSERT_TRUE(AddName(path, folder_ / "home/second"));
    EXPECT_EQ(Remove(), UsersOutcome::Changed);
    RemoveFile(folder_ / "home/second");
    ASSERT_EQ(chown(path.CString(), 0, 0), 0);
    EXPECT_EQ(Remove(), UsersOutcome::Changed);
    RemoveFile(path);
    const SString target = folder_.Write("home/target", text_);
    Own(target);
    ASSERT_EQ(symlink("target", path.CString()), 0);
    Own(path);
    EXPECT_EQ(Remove(), UsersOutcome::Changed);
    EXPECT_TRUE(IsThere() && EntryExists(target));
}

/// As the user: neither a home nor a file of somebody else's is at risk.
TEST_F(NoticeRemoval, HasTheUsersRightsOnly) {
    Put(text_);
    ASSERT_EQ(chown((folder_ / "home").CString(), 0, 0), 0);
    chmod((folder_ / "home").CString(), 0755);
    EXPECT_EQ(Remove(), UsersOutcome::Failed);
    chmod((folder_ / "home").CString(), 0700);
    EXPECT_EQ(Remove(), UsersOutcome::Nothing);
    EXPECT_TRUE(IsThere());
}

}  // namespace
