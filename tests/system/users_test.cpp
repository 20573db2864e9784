// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/child_process.h"
#include "support/temp_home.h"
#include "support/text_checks.h"

#include <vyxsystem.h>

#include <gtest/gtest.h>

#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using vyxtest::ChildOptions;
using vyxtest::Mount;

// A private user and group database: the machine's own entries plus test
// users, bound over /etc/passwd and /etc/group inside the child only.
ChildOptions withTestUsers(const vyxtest::TempHome& world)
{
    std::string passwd = vyxtest::readFile("/etc/passwd") +
                         "alice:x:2001:2001:Alice Liddell,Room 1,,:/home/alice:/bin/sh\n"
                         "many:x:2002:2002::/home/many:/bin/sh\n"
                         "bob:x:2003:2003::/home/bob:/bin/sh\n";
    std::string group =
        vyxtest::readFile("/etc/group") + "alice:x:2001:\nwheelers:x:3000:alice\nmany:x:2002:\nbob:x:2003:\n";
    for (int i = 0; i < 300; ++i)
        group += "g" + std::to_string(i) + ":x:" + std::to_string(4000 + i) + ":many\n";
    ChildOptions options;
    options.mounts = {Mount::bind(world.writeFile("passwd", passwd), "/etc/passwd"),
                      Mount::bind(world.writeFile("group", group), "/etc/group")};
    return options;
}

// The library asks from its own threads too (suitability, the window
// manager's channel): answers and lookups must not race. Answers are
// remembered per process: the database changing under it changes none.
TEST(Groups, ThreadsAgreeOnMembershipRememberedPerProcess)
{
    vyxtest::TempHome world;
    VYX_EXPECT_CHILD(vyxtest::runInChild(withTestUsers(world), [&] {
        std::vector<int> wrong(4, 0);
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([&wrong, t] {
                // A new group each round: every call looks up and remembers.
                for (int round = 0; round < 50; ++round) {
                    const std::string group = "g" + std::to_string(round);
                    wrong[t] += isUserInGroup(group.c_str(), 2001u) + !isUserInGroup("wheelers", "alice") +
                                getUserName().empty();
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(wrong, std::vector<int>(4, 0));

        EXPECT_TRUE(isUserInGroup("alice", "alice"));  // the primary group counts
        EXPECT_FALSE(isUserInGroup("many", "alice"));
        EXPECT_TRUE(isUserInGroup("wheelers", 2001u));
        EXPECT_FALSE(isUserInGroup("alice", 2003u));
        EXPECT_FALSE(isUserInGroup("wheelers", 99999u));
        EXPECT_FALSE(isUserInGroup(nullptr));
        // More than 256 groups: answered false, not retried.
        EXPECT_EQ(vyxtest::stderrOf([] {
                      EXPECT_FALSE(isUserInGroup("wheelers", "nobody-such"));
                      EXPECT_FALSE(isUserInGroup("g5", "many"));
                  }),
                  "libvyxcore: getpwnam(nobody-such) failed\n"
                  "libvyxcore: getgrouplist(many,...) returned -1; ngroups = 301\n");

        // alice leaves wheelers and bob joins alice's group; written in place,
        // as the file is bound.
        std::string group = vyxtest::readFile("/etc/group");
        group.replace(group.find("wheelers:x:3000:alice"), 21, "wheelers:x:3000:");
        group.replace(group.find("\nalice:x:2001:\n"), 15, "\nalice:x:2001:bob\n");
        world.writeFile("group", group);
        EXPECT_TRUE(isUserInGroup("wheelers", "alice"));
        EXPECT_FALSE(isUserInGroup("alice", 2003u));
    }));
}

// Names come from the password database before the environment, LOGNAME
// before USER. The administrator group is granted to uid 0 and to the name
// "root" without a lookup: neither database need know root or the group.
TEST(Users, RootAndOrdinaryUser)
{
    vyxtest::TempHome world;
    ChildOptions options = withTestUsers(world);
    options.unprivileged = true;
    options.uid = 2001;
    options.gid = 2001;
    vyxtest::ScopedEnv logname("LOGNAME", ""), user("USER", "fallback");
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, [] {
        EXPECT_FALSE(isUserRoot());
        EXPECT_EQ(getUserName(), "alice");
        EXPECT_EQ(getUserFullName(), "Alice Liddell");
        EXPECT_FALSE(isUserInGroup("orvel-admin"));
        EXPECT_TRUE(isUserInGroup("wheelers"));
    }));
    options.uid = options.gid = 54321;
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, [] {
        EXPECT_EQ(getUserName(), "fallback");
        EXPECT_EQ(getUserFullName(), "");
    }));

    if (getuid() != 0)
        GTEST_SKIP() << "needs uid 0";
    ChildOptions root;
    root.mounts = {
        Mount::bind(world.writeFile("passwd", "alice:x:2001:2001::/home/alice:/bin/sh\n"), "/etc/passwd"),
        Mount::bind(world.writeFile("group", "alice:x:2001:\n"), "/etc/group"),
        // Only the files: other sources may make up an entry for root.
        Mount::bind(world.writeFile("nsswitch.conf", "passwd: files\ngroup: files\n"), "/etc/nsswitch.conf")};
    vyxtest::ScopedEnv operatorName("LOGNAME", "operator");
    VYX_EXPECT_CHILD(vyxtest::runInChild(root, [] {
        EXPECT_TRUE(isUserRoot());
        EXPECT_EQ(vyxtest::stderrOf([] {
                      EXPECT_EQ(getUserName(), "operator");
                      EXPECT_TRUE(isUserInGroup("orvel-admin"));
                      EXPECT_TRUE(isUserInGroup("orvel-admin", "root"));
                      EXPECT_FALSE(isUserInGroup("orvel-admin", 0u));  // no entry for uid 0
                  }),
                  "");
    }));
}

}  // namespace
