#include "install/accounts/account_form.h"

#include <gtest/gtest.h>

#include "support/system/environment.h"
#include "support/system/file.h"
#include "tests/temporary_folder.h"

namespace {

TEST(SendNewAccountForm, QueuesOneRequestNamedAfterTheProcess) {
    const TemporaryFolder folder;
    PutEnv("TernHarbor", folder / "");
    ASSERT_TRUE(MakeDir(folder / "control", 0770));
    SendNewAccountForm();
    EXPECT_EQ(BaseName(ReadDir(folder / "control"), ""),
              SStringList("NewAccountForm." + ProcessIdString() + "-Control"));
    EXPECT_EQ(MapFileRead(ReadDir(folder / "control").Get(0)),
              "Function: Account-Manager\n"
              "Control-Type: Request\n"
              "Request-Type: NewAccountForm\n"
              "Priority: 1\n");
}

TEST(SendNewAccountForm, LeavesNothingWhereThereIsNoQueue) {
    const TemporaryFolder folder;
    PutEnv("TernHarbor", folder / "");
    SendNewAccountForm();
    EXPECT_TRUE(ReadDir(folder / "").IsEmpty());
}

}  // namespace
