#include "support/system/environment.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace {

TEST(GetEnv, ReadsWhatPutEnvSets) {
    unsetenv("InstallTest");
    EXPECT_EQ(GetEnv("InstallTest"), "");
    PutEnv("InstallTest", "one");
    EXPECT_EQ(GetEnv("InstallTest"), "one");
    PutEnv("InstallTest", "a=b c");
    EXPECT_EQ(GetEnv("InstallTest"), "a=b c");
    PutEnv("InstallTest", "");
    EXPECT_EQ(GetEnv("InstallTest"), "");
    unsetenv("InstallTest");
}

TEST(ProcessIdString, IsDecimal) {
    EXPECT_EQ(ProcessIdString(), SString(std::to_string(getpid())));
}

}  // namespace
