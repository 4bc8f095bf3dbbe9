#include "check/host/units.h"

#include <gtest/gtest.h>

namespace {

TEST(SocketUnitIn, IsTheOneOfThePort) {
    const SStringList lines = {
        "/run/dbus/system_bus_socket dbus.socket            dbus.service",
        "0.0.0.0:110                 pop3d.socket           pop3d.service",
        "[::]:25                     smtp.socket            smtp.service",
        "[::]:2525                   other.socket           other.service",
    };
    EXPECT_EQ(SocketUnitIn(lines, "25"), "smtp.socket");
    EXPECT_EQ(SocketUnitIn(lines, "110"), "pop3d.socket");
    EXPECT_EQ(SocketUnitIn(lines, "79"), "");
    EXPECT_EQ(SocketUnitIn({}, "25"), "");
}

}  // namespace
