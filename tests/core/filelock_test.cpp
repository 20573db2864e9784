// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/temp_home.h"

#include <vyxfileutils.h>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const Vyx::tagged_bool<LockRead_tag> kWrite(false), kRead(true);
const Vyx::tagged_bool<BlockingCall_tag> kWait(true), kNoWait(false);

// Locks are per process: the other side must be a real second process.
TEST(FileLock, SecondProcessFailsOrWaitsAndBadDescriptorsAreReported)
{
    vyxtest::TempHome world;
    std::string path = world.writeFile("lockfile", "");
    int toChild[2], toParent[2];
    ASSERT_EQ(pipe(toChild), 0);
    ASSERT_EQ(pipe(toParent), 0);

    pid_t child = fork();
    if (child == 0) {
        int fd = open(path.c_str(), O_RDWR);
        char go;
        bool ok = vyxLockFile(fd, kWrite, kNoWait);
        ok = write(toParent[1], "L", 1) == 1 && ok;  // holding the lock
        ok = read(toChild[0], &go, 1) == 1 && ok;  // until told to let go
        ok = vyxUnlockFile(fd) && ok;
        _exit(ok ? 0 : 1);
    }
    char signal;
    ASSERT_EQ(read(toParent[0], &signal, 1), 1);
    int fd = open(path.c_str(), O_RDWR);
    EXPECT_FALSE(vyxLockFile(fd, kWrite, kNoWait));
    EXPECT_FALSE(vyxLockFile(fd, kRead, kNoWait));

    ASSERT_EQ(write(toChild[1], "U", 1), 1);
    EXPECT_TRUE(vyxLockFile(fd, kWrite, kWait));  // returns once the child let go
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_TRUE(vyxUnlockFile(fd));
    close(fd);

    testing::internal::CaptureStderr();
    EXPECT_FALSE(vyxLockFile(-1, kRead, kNoWait));
    EXPECT_FALSE(vyxUnlockFile(-1));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "VyxLockedFile::lock(): fcntl: Bad file descriptorVyxLockedFile::lock(): fcntl: Bad file descriptor");
}

}  // namespace
