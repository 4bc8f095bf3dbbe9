#include "support/system/identity.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <linux/securebits.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>

namespace {

constexpr uid_t kUser = 54321;
constexpr gid_t kGroup = 54322;
const std::vector<gid_t> kGroups = {kGroup, 54323};

std::vector<gid_t> Groups() {
    std::vector<gid_t> groups(static_cast<size_t>(getgroups(0, nullptr)));
    groups.resize(static_cast<size_t>(getgroups(static_cast<int>(groups.size()), groups.data())));
    std::ranges::sort(groups);
    return groups;
}

TEST(AsUser, TakesAndGivesBackTheWholeIdentity) {
    const auto before = Groups();
    {
        const AsUser user({kUser, kGroup, kGroups});
        EXPECT_TRUE(user.IsTaken());
        EXPECT_EQ(geteuid(), kUser);
        EXPECT_EQ(getegid(), kGroup);
        EXPECT_EQ(Groups(), kGroups);
        EXPECT_EQ(getuid(), 0U);
    }
    EXPECT_EQ(geteuid(), 0U);
    EXPECT_EQ(getegid(), getgid());
    EXPECT_EQ(Groups(), before);
}

TEST(AsUser, ChangesNothingWhereTheSystemRefuses) {
    const auto before = Groups();
    const AsUser user({static_cast<uid_t>(-1), kGroup, kGroups});
    EXPECT_FALSE(user.IsTaken());
    EXPECT_EQ(geteuid(), 0U);
    EXPECT_EQ(getegid(), getgid());
    EXPECT_EQ(Groups(), before);
}

TEST(AsUser, CanBeTakenByAnotherUser) {
    const AsUser owner({kUser, kGroup, kGroups});
    {
        const AsUser other({kUser + 1, kGroup + 5, {}});
        EXPECT_TRUE(other.IsTaken());
        EXPECT_EQ(geteuid(), kUser + 1);
    }
    EXPECT_EQ(geteuid(), kUser);
    EXPECT_EQ(getegid(), kGroup);
    EXPECT_EQ(Groups(), kGroups);
}

TEST(ManyUsers, AreTakenOneAfterAnother) {
    const AsUser owner({kUser, kGroup, kGroups});
    {
        const AsRoot root;
        ManyUsers users;
        const Identity identities[] = {{kUser + 1, kGroup, kGroups},
                                       {kUser + 2, kGroup, kGroups},
                                       {kUser + 3, kGroup + 5, kGroups},
                                       {kUser + 3, kGroup + 5, {kGroup + 5}},
                                       {0, 0, {0}},
                                       {kUser, kGroup, kGroups}};
        for (const Identity& identity : identities) {
            {
                const AsUser user(&users, identity);
                EXPECT_TRUE(user.IsTaken());
                EXPECT_EQ(geteuid(), identity.uid);
                EXPECT_EQ(getegid(), identity.gid);
                EXPECT_EQ(Groups(), identity.groups);
            }
            EXPECT_EQ(geteuid(), 0U);
            EXPECT_EQ(getuid(), 0U);
        }
    }
    EXPECT_EQ(geteuid(), kUser);
    EXPECT_EQ(getegid(), kGroup);
    EXPECT_EQ(Groups(), kGroups);
}

TEST(ManyUsers, GoOnAfterOneThatTheSystemRefuses) {
    const auto before = Groups();
    {
        ManyUsers users;
        EXPECT_FALSE(AsUser(&users, {kNoId, kGroup, kGroups}).IsTaken());
        EXPECT_EQ(geteuid(), 0U);
        EXPECT_EQ(Groups(), before);
        const AsUser user(&users, {kUser, kGroup, kGroups});
        EXPECT_TRUE(user.IsTaken());
        EXPECT_EQ(Groups(), kGroups);
    }
    EXPECT_EQ(geteuid(), 0U);
    EXPECT_EQ(getegid(), getgid());
    EXPECT_EQ(Groups(), before);
}

// A core file would hold passwords.
TEST(AsUser, EndsTheProgramWhereItsIdentityCannotBeGivenBack) {
    const auto lose_root = [] {
        const AsUser user({kUser, kGroup, kGroups});
        if (setresuid(kUser, kUser, kUser) != 0) _exit(1);
    };
    EXPECT_EXIT(lose_root(), testing::ExitedWithCode(2),
                "^Install: root's rights could not be given up; ended.\n$");
}

TEST(AsRoot, EndsTheProgramWhereRootsRightsCannotBeGivenUp) {
    const auto stay_root = [] {
        const AsRoot root(kUser);
        if (setresuid(kUser + 1, kUser + 1, kUser + 1) != 0) _exit(1);
    };
    EXPECT_EXIT(stay_root(), testing::ExitedWithCode(2),
                "^Install: root's rights could not be given up; ended.\n$");
}

TEST(AsRoot, TakesRootsRightsForAScope) {
    const AsUser owner({kUser, kGroup, kGroups});
    {
        const AsRoot root;
        EXPECT_EQ(geteuid(), 0U);
        EXPECT_EQ(getegid(), kGroup);
        {
            const AsRoot again;
            EXPECT_EQ(geteuid(), 0U);
        }
        EXPECT_EQ(geteuid(), 0U);
    }
    EXPECT_EQ(geteuid(), kUser);
}

TEST(GroupsOf, HoldThePrimaryGroup) {
    EXPECT_EQ(GroupsOf("no-such-login", kGroup), std::vector<gid_t>{kGroup});
}

bool ServerIdentityIsAsStarted() {
    uid_t real = 1;
    uid_t effective = 1;
    uid_t saved = 1;
    gid_t real_group = 1;
    gid_t effective_group = 1;
    gid_t saved_group = 1;
    return getresuid(&real, &effective, &saved) == 0 && real + effective + saved == 0 &&
           getresgid(&real_group, &effective_group, &saved_group) == 0 && effective_group == getgid() &&
           saved_group == getgid() && Groups() == kGroups;
}

// In processes of their own, as both are for good.
TEST(BecomeMailOwner, LeavesRootOnlyAsTheRealUser) {
    const auto try_it = [] {
        const bool became = BecomeMailOwner("no-such-login", kUser, kGroup);
        _exit(became && geteuid() == kUser && getegid() == kGroup && getuid() == 0 &&
                      Groups() == std::vector<gid_t>{kGroup}
                  ? 0
                  : 1);
    };
    EXPECT_EXIT(try_it(), testing::ExitedWithCode(0), "");
}

TEST(BecomeMailOwner, FailsWhereRootsCapabilitiesWouldStay) {
    const auto try_it = [] {
        const bool prepared = prctl(PR_SET_SECUREBITS, SECBIT_NO_SETUID_FIXUP) == 0;
        _exit(prepared && !BecomeMailOwner("no-such-login", kUser, kGroup) ? 0 : 1);
    };
    EXPECT_EXIT(try_it(), testing::ExitedWithCode(0), "");
}

TEST(BecomeRootAsStarted, GivesTheGroupsOfTheStartBack) {
    const auto try_it = [] {
        const bool prepared = setgroups(kGroups.size(), kGroups.data()) == 0;
        RememberGroups();
        const bool became = BecomeMailOwner("no-such-login", kUser, kGroup) && BecomeRootAsStarted();
        _exit(prepared && became && ServerIdentityIsAsStarted() ? 0 : 1);
    };
    EXPECT_EXIT(try_it(), testing::ExitedWithCode(0), "");
}

}  // namespace
