// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/child_process.h"

#include <vyxsession.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

// Holds the abstract socket an X server on display n would hold.
int occupy(int number)
{
    int fd = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    int length = std::snprintf(address.sun_path + 1, sizeof address.sun_path - 1, "/tmp/.X11-unix/X%d", number);
    if (bind(fd, reinterpret_cast<sockaddr*>(&address), static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + length)) != 0) {
        close(fd);
        return -1;
    }
    return fd;
}

TEST(FreeDisplay, SkipsTakenNumbersInAnEmptyNamespace)
{
    vyxtest::ChildOptions options;
    options.privateNetwork = true;  // nobody else's abstract sockets
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, [] {
        EXPECT_EQ(getFreeXDisplayNumber(-5), 0);
        int zero = occupy(0);
        ASSERT_GE(zero, 0);
        EXPECT_EQ(getFreeXDisplayNumber(0), 1);
        EXPECT_EQ(getFreeXDisplayNumber(-5), 1);
        int one = occupy(1);
        EXPECT_EQ(getFreeXDisplayNumber(0), 2);
        EXPECT_EQ(getFreeXDisplayNumber(59535), 59535);
        EXPECT_EQ(getFreeXDisplayNumber(59536), -1);
        close(one);
        close(zero);
        EXPECT_EQ(getFreeXDisplayNumber(0), 0);  // released, free again
    }));
}

TEST(FreeDisplay, SeesARealBoundSocket)
{
    // In the machine's own namespace: find two free neighbours, take the
    // first, and the answer must move past it.
    int start = getFreeXDisplayNumber(4000);
    ASSERT_GE(start, 4000);
    int held = occupy(start);
    ASSERT_GE(held, 0);
    EXPECT_GT(getFreeXDisplayNumber(start), start);
    close(held);
}

}  // namespace
