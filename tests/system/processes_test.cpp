// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/child_process.h"
#include "support/temp_home.h"

#include <vyxfileutils.h>
#include <vyxsystem.h>

#include <gtest/gtest.h>

#include <csignal>
#include <cstring>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utmpx.h>

namespace {

TEST(Processes, ParentCommandLineAndName)
{
    vyxtest::TempHome world;
    // A program with a name nothing else on the machine has; its ")" and
    // blanks show up in the kernel's name inside /proc/PID/stat too.
    std::string program = world.path("vyxprobe) 1 (x");
    ASSERT_TRUE(vyxCopyFile("/bin/sleep", program.c_str()));
    chmod(program.c_str(), 0755);
    pid_t child = fork();
    if (child == 0) {
        execl(program.c_str(), program.c_str(), "30", "--", static_cast<char*>(nullptr));
        _exit(127);
    }
    // Wait until the exec has happened.
    for (int i = 0; i < 500 && getCmdLine(child).find("vyxprobe") == std::string::npos; ++i)
        usleep(2000);

    EXPECT_EQ(getPPid(child), getpid());
    EXPECT_EQ(getPPid(0), getppid());
    EXPECT_NE(getCmdLine(0).find("system_tests"), std::string::npos);
    EXPECT_EQ(getCmdLine(child), program + " 30 --");
    EXPECT_EQ(findInPS("vyxprobe) 1 (x"), child);
    EXPECT_EQ(findInPS("vyxprobe"), -1);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);

    EXPECT_EQ(getPPid(999999999), -1);
    EXPECT_EQ(getCmdLine(999999999), "");
    EXPECT_EQ(findInPS(nullptr), -1);
}

TEST(Processes, CountsLoggedInSessions)
{
    vyxtest::TempHome world;
    // A login record file of our own, bound over the system's.
    std::string records = world.writeFile("utmp", "");
    ASSERT_EQ(utmpxname(records.c_str()), 0);
    setutxent();
    const struct {
        short type;
        const char* line;
    } entries[] = {{USER_PROCESS, "pts/1"}, {DEAD_PROCESS, "pts/2"}, {USER_PROCESS, "tty2"}, {LOGIN_PROCESS, "tty3"}};
    int pid = 100;
    for (const auto& e : entries) {
        utmpx record {};
        record.ut_type = e.type;
        record.ut_pid = pid++;
        std::strncpy(record.ut_line, e.line, sizeof record.ut_line - 1);
        std::strncpy(record.ut_id, e.line + std::strlen(e.line) - 1, sizeof record.ut_id);
        std::strncpy(record.ut_user, "tester", sizeof record.ut_user - 1);
        ASSERT_NE(pututxline(&record), nullptr);
    }
    endutxent();
    utmpxname(_PATH_UTMPX);

    vyxtest::ChildOptions options;
    options.mounts = {vyxtest::Mount::bind(records, _PATH_UTMPX)};
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, [] { EXPECT_EQ(numWho(), 2); }));
}

}  // namespace
