#include "install/record/checksum.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/temporary_folder.h"

namespace {

// FIPS 180-4, the examples of its appendix.
TEST(Checksum, IsSha256) {
    EXPECT_EQ(Checksum("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(Checksum(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}

TEST(KeyedChecksum, IsOfTheKeyAndTheText) {
    EXPECT_EQ(KeyedChecksum("a", "bc"), Checksum("abc"));
}

TEST(KeyedSum, IsOfTheKeyAndThePieces) {
    const std::string with_null("c\0", 2);
    KeyedSum sum("a");
    for (const std::string_view piece :
         {std::string_view("b"), std::string_view(), std::string_view(with_null)}) {
        sum.Add(piece);
    }
    EXPECT_EQ(sum.Digits(), KeyedChecksum("a", "b" + with_null));
}

TEST(Checksum, IsOfAFileThatIsLargerThanAPiece) {
    const TemporaryFolder folder;
    const SString bytes('x', 3000000);
    const SString path = folder.Write("file", bytes);
    const Descriptor file = Descriptor::Open(path, O_RDONLY);
    EXPECT_EQ(Checksum(file), Checksum(bytes));
    EXPECT_EQ(Checksum(file), Checksum("")) << "from here";
    EXPECT_EQ(Checksum(Descriptor::Open(folder / ".", O_RDONLY)), "");
}

TEST(ChecksumAt, IsOfTheFileOrOfTheLinksText) {
    const TemporaryFolder folder;
    const SString path = folder.Write("file", "abc");
    ASSERT_EQ(symlink("file", (folder / "link").CString()), 0);
    ASSERT_EQ(mkfifo((folder / "pipe").CString(), 0600), 0);
    EXPECT_EQ(ChecksumAt(path), Checksum("abc"));
    EXPECT_EQ(ChecksumAt(folder / "link"), Checksum("file"));
    for (const char* none : {"pipe", ".", "missing"}) EXPECT_EQ(ChecksumAt(folder / none), "") << none;
}

TEST(Hexadecimal, HasTwoDigitsAByte) {
    EXPECT_EQ(Hexadecimal(SString(std::string_view("\0\x0F\xA0", 3))), "000fa0");
}

}  // namespace
