// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The harness itself: the isolation it promises is what keeps the other
// tests off the real machine.

#include "support/child_process.h"
#include "support/temp_home.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool exists(const std::string& path)
{
    struct stat st;
    return lstat(path.c_str(), &st) == 0;
}

TEST(Harness, TempHomeIsolatesAndCleansUp)
{
    std::string root;
    vyxtest::ScopedEnv display("DISPLAY", ":99"), vyx("VYX_RC_FILE", "/x"), home("HOME", "/nowhere");
    {
        vyxtest::TempHome world;
        root = world.root();
        EXPECT_EQ(std::getenv("HOME"), world.home());
        EXPECT_EQ(std::getenv("DISPLAY"), nullptr);
        EXPECT_EQ(std::getenv("VYX_RC_FILE"), nullptr);
        world.writeFile("home/a/b/c.txt", "x");
        EXPECT_EQ(vyxtest::readFile(world.path("home/a/b/c.txt")), "x");
    }
    EXPECT_FALSE(exists(root));
    // And the environment is the test's own again.
    EXPECT_STREQ(std::getenv("DISPLAY"), ":99");
    EXPECT_STREQ(std::getenv("HOME"), "/nowhere");
    EXPECT_STREQ(std::getenv("VYX_RC_FILE"), "/x");
}

TEST(Harness, ChildrenMountPrivatelyDropRightsAndReportFailures)
{
    // A path that does not exist on the machine: the harness must make the
    // mount point without writing the real file system.
    const std::string missing = "/usr/share/vyxcore-harness-probe/deeper";
    ASSERT_FALSE(exists("/usr/share/vyxcore-harness-probe"));
    vyxtest::TempHome world;
    std::string source = world.writeFile("meminfo", "MemTotal: 42 kB\n");

    vyxtest::ChildOptions options;
    options.mounts = {vyxtest::Mount::tmpfs(missing), vyxtest::Mount::bind(source, "/etc/vyxcore-probe-file")};
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, [&] {
        EXPECT_TRUE(exists(missing));
        EXPECT_EQ(vyxtest::readFile("/etc/vyxcore-probe-file"), "MemTotal: 42 kB\n");
    }));
    EXPECT_FALSE(exists("/usr/share/vyxcore-harness-probe"));
    EXPECT_FALSE(exists("/etc/vyxcore-probe-file"));

    // Failures in the child reach the parent; an unprivileged child is not root.
    vyxtest::ChildResult result = vyxtest::runInChild({}, [] { ADD_FAILURE() << "expected failure in child"; });
    EXPECT_EQ(result.outcome, vyxtest::ChildResult::Outcome::Failed);
    vyxtest::ChildOptions unprivileged;
    unprivileged.unprivileged = true;
    VYX_EXPECT_CHILD(vyxtest::runInChild(unprivileged, [] { EXPECT_NE(geteuid(), 0u); }));
}

}  // namespace
