#include "install/host/probes.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "support/system/identity.h"

namespace {

TEST(Probes, GiveTheIdentityBack) {
    const AsUser owner({54321, 54322, {54322}});
    ASSERT_TRUE(owner.IsTaken());
    ListeningPorts();
    MailQueueListing();
    EXPECT_TRUE(RunningProcesses().Contains(SString(getpid()) + " install_test"));
    EXPECT_EQ(geteuid(), 54321U);
}

}  // namespace
