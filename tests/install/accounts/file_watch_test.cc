#include "install/accounts/file_watch.h"

#include <gtest/gtest.h>

#include "support/system/file.h"
#include "tests/temporary_folder.h"

namespace {

TEST(FileWatch, NoticesEveryKindOfChange) {
    const TemporaryFolder folder;
    FileWatch watch(folder / "file");
    EXPECT_TRUE(watch.HasChanged());  // the first look
    EXPECT_FALSE(watch.HasChanged());
    folder.Write("file", "one\n");
    EXPECT_TRUE(watch.HasChanged());
    EXPECT_FALSE(watch.HasChanged());
    folder.Write("file", "longer\n");
    EXPECT_TRUE(watch.HasChanged());
    folder.Write("other", "longer\n");
    ASSERT_TRUE(Rename(folder / "other", folder / "file"));
    EXPECT_TRUE(watch.HasChanged());
    ASSERT_TRUE(RemoveFile(folder / "file"));
    EXPECT_TRUE(watch.HasChanged());
    EXPECT_FALSE(watch.HasChanged());
}

}  // namespace
