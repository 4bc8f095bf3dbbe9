#include "support/process/message_socket.h"

#include <gtest/gtest.h>

namespace {

using std::chrono::milliseconds;

class Messages : public testing::Test {
  protected:
    Messages() : ends_(*MessageSocket::Pair()) {}
    MessageSocket& Left() { return ends_.first; }
    MessageSocket& Right() { return ends_.second; }

    /// Moves bytes until a message is whole on the right.
    SStringList Arrived() {
        for (int i = 0; i < 1000; ++i) {
            if (auto message = Right().Next()) return *message;
            Left().Transfer(milliseconds(0));
            Right().Transfer(milliseconds(0));
        }
        return "nothing";
    }

    std::pair<MessageSocket, MessageSocket> ends_;
};

TEST_F(Messages, ArriveAsTheyWere) {
    const SStringList messages[] = {
        {"a", "b c"}, {}, {""}, {"", "", ""}, {SString(std::string("\0\n\xff", 3))}, SString('x', 3'000'000)};
    for (const SStringList& message : messages) Left().Queue(message);
    for (const SStringList& message : messages) EXPECT_EQ(Arrived(), message);
    EXPECT_FALSE(Left().HasQueued());
}

TEST_F(Messages, OfBothSidesDoNotWaitForEachOther) {
    Left().Queue(SString('x', 3'000'000));
    Right().Queue(SString('y', 3'000'000));
    for (int i = 0; i < 1000; ++i) {
        ASSERT_TRUE(Left().Transfer(milliseconds(0)));
        ASSERT_TRUE(Right().Transfer(milliseconds(0)));
    }
    EXPECT_EQ(Left().Next(), SStringList(SString('y', 3'000'000)));
    EXPECT_EQ(Right().Next(), SStringList(SString('x', 3'000'000)));
}

TEST_F(Messages, AreGivenOutAfterTheOtherEndIsGone) {
    Left().Queue("last");
    ASSERT_TRUE(Left().Transfer(milliseconds(0)));
    Left() = MessageSocket();
    EXPECT_TRUE(Right().Transfer(milliseconds(0)));
    EXPECT_FALSE(Right().Transfer(milliseconds(0)));
    EXPECT_EQ(Right().Next(), SStringList("last"));
    EXPECT_FALSE(Right().Next());
}

TEST_F(Messages, ThatAreCutAreNone) {
    Left().Queue(SString('x', 3'000'000));
    Left().Transfer(milliseconds(0));
    Right().Transfer(milliseconds(0));
    EXPECT_FALSE(Right().Next());
    Left() = MessageSocket();
    while (Right().Transfer(milliseconds(0))) EXPECT_FALSE(Right().Next());
    EXPECT_FALSE(Right().Next());
}

TEST_F(Messages, AreWaitedForNoLongerThanAsked) {
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(Right().Transfer(milliseconds(50)));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, milliseconds(49));
    EXPECT_FALSE(Right().Next());
}

}  // namespace
