// What tests of ways back share: the change looked at, and taken back.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/temporary_folder.h"
#include "undo/ways.h"

inline UndoneRun AnyRun() {
    return {"/nowhere/", "", "2026-11-22T17:04:05Z", "", {}, nullptr};
}

template <typename Kind>
Standing StandingOf(const Kind& change) {
    return LookAt(change, AnyRun()).standing;
}

/// Takes back what can be, and expects that nothing is left to be.
template <typename Kind>
void ExpectTakenBack(const Kind& change) {
    ASSERT_EQ(StandingOf(change), Standing::AsLeft) << LookAt(change, AnyRun()).text;
    const TakenBack taken = TakeBack(change, AnyRun());
    EXPECT_TRUE(taken.is_whole);
    EXPECT_EQ(taken.left, SStringList());
    EXPECT_EQ(StandingOf(change), Standing::AsBefore) << LookAt(change, AnyRun()).text;
}

inline struct stat StatusOf(const SString& path) {
    struct stat status {};
    EXPECT_EQ(lstat(path.CString(), &status), 0) << path;
    return status;
}

inline mode_t ModeOf(const SString& path) {
    return StatusOf(path).st_mode & 07777;
}
