#include "undo/host/still_link.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "support/system/file.h"
#include "tests/temporary_folder.h"

namespace {

class StillLink : public testing::Test {
  protected:
    void Link(const SString& text) { ASSERT_EQ(symlink(text.CString(), path.CString()), 0); }

    TemporaryFolder folder;
    SString path = folder / "sendmail";
    SString other = folder.Write("other", "old one");
    SString spare = folder / "spare";
};

TEST_F(StillLink, IsReplaced) {
    Link("emulator");
    EXPECT_TRUE(ReplaceLink(path, "emulator", other));
    EXPECT_EQ(MapFileRead(path), "old one");
    EXPECT_FALSE(EntryExists(other));
}

TEST_F(StillLink, IsNotReplacedWhereItIsAnother) {
    EXPECT_FALSE(ReplaceLink(path, "emulator", other)) << "nothing";
    folder.Write("sendmail", "new one");
    EXPECT_FALSE(ReplaceLink(path, "emulator", other));
    EXPECT_EQ(MapFileRead(path), "new one");
    RemoveFile(path);
    Link("postfix");
    EXPECT_FALSE(ReplaceLink(path, "emulator", other));
    EXPECT_EQ(LinkText(path), "postfix");
    EXPECT_EQ(MapFileRead(other), "old one");
}

TEST_F(StillLink, IsRemoved) {
    EXPECT_TRUE(RemoveLink(path, "emulator", spare)) << "nothing";
    Link("emulator");
    EXPECT_TRUE(RemoveLink(path, "emulator", spare));
    EXPECT_FALSE(EntryExists(path));
    EXPECT_FALSE(EntryExists(spare));
}

TEST_F(StillLink, IsNotRemovedWhereItIsAnotherOrTheSpareNameIsTaken) {
    Link("postfix");
    EXPECT_FALSE(RemoveLink(path, "emulator", spare));
    EXPECT_FALSE(RemoveLink(path, "postfix", other));
    EXPECT_EQ(LinkText(path), "postfix");
    EXPECT_EQ(MapFileRead(other), "old one");
    EXPECT_FALSE(EntryExists(spare));
}

}  // namespace
