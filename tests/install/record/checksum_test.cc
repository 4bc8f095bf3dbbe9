#include "install/record/checksum.h"

#include <gtest/gtest.h>

namespace {

// FIPS 180-4, the examples of its appendix.
TEST(Checksum, IsSha256) {
    EXPECT_EQ(Checksum("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(Checksum(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}

TEST(KeyedChecksum, IsOfTheKeyAndTheText) {
    EXPECT_EQ(KeyedChecksum("a", "bc"), Checksum("abc"));
}

TEST(Hexadecimal, HasTwoDigitsAByte) {
    EXPECT_EQ(Hexadecimal(SString(std::string_view("\0\x0F\xA0", 3))), "000fa0");
}

}  // namespace
