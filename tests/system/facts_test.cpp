// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/child_process.h"
#include "support/temp_home.h"

#include <vyxfileutils.h>
#include <vyxsystem.h>

#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utmpx.h>

namespace {

// Runs body with a private /proc holding only the given files. The figures
// are read once per process, so each scenario gets its own child.
void withProc(const std::vector<std::pair<std::string, std::string>>& files, const std::function<void()>& body)
{
    vyxtest::ChildOptions options;
    options.mounts = {vyxtest::Mount::tmpfs("/proc")};
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, [&] {
        mkdir("/proc/asound", 0755);
        for (const auto& file : files)
            std::ofstream("/proc/" + file.first) << file.second;
        body();
    }));
}

std::string cpu(const char* mhz)
{
    return std::string("processor\t: 0\nmodel name\t: Test CPU\ncpu MHz\t\t: ") + mhz + "\ncache size\t: 1 kB\n";
}

std::string memory(unsigned kb)
{
    return "MemTotal:       " + std::to_string(kb) + " kB\nMemFree:          1000 kB\n";
}

// The first processor decides; rates that are missing, not numbers or too
// big count as unknown, and unknown figures never make a platform light.
TEST(Facts, ProcessorAndMemoryMakeALightPlatform)
{
    const struct {
        std::string cpuinfo, meminfo;
        unsigned mhz, memory;
        bool light;
    } cases[] = {
        {cpu("999.900"), memory(8000000), 999, 8000000, true},
        {cpu("1500.000"), memory(253679), 1500, 253679, true},
        {cpu("1000.000"), memory(253680), 1000, 253680, false},
        {"processor\t: 0\n", "MemFree: 5 kB\n", 0, 0, false},
        {cpu("1800.5") + cpu("700.0"), memory(8000000), 1800, 8000000, false},
        {"cpu MHz 1200\n", memory(8000000), 0, 8000000, false},  // no ":"
        {"cpu MHz\t: inf\n", memory(8000000), 0, 8000000, false},
        {"cpu MHz\t: 999999999999\n", memory(8000000), 0, 8000000, false},
        {"cpu MHz\t: -5\n", memory(8000000), 0, 8000000, false},
    };
    for (const auto& c : cases) {
        withProc({{"cpuinfo", c.cpuinfo}, {"meminfo", c.meminfo}}, [&] {
            EXPECT_EQ(GetCPUMhz(), c.mhz) << c.cpuinfo;
            EXPECT_EQ(GetMemTotal(), c.memory) << c.meminfo;
            EXPECT_EQ(lightPlatform(), c.light) << c.cpuinfo << c.meminfo;
        });
    }
}

// Figures are read once per process; the tail of a long line is no line of
// its own: the first line is cut by a line reader with a small buffer exactly
// where a "MemTotal:" text starts.
TEST(Facts, MemoryReadOnceSoundCardsAndLocale)
{
    const std::string longLine = "Filler:" + std::string(504, ' ') + "MemTotal: 100 kB\n";
    withProc({{"meminfo", longLine + memory(4096)}}, [] {
        EXPECT_EQ(GetMemTotal(), 4096u);
        std::ofstream("/proc/meminfo") << memory(1);
        EXPECT_EQ(GetMemTotal(), 4096u);
    });
    using Files = std::vector<std::pair<std::string, std::string>>;
    const std::pair<Files, bool> cards[] = {
        {{{"asound/cards", "--- no soundcards ---\n"}}, false},
        {{{"asound/cards", " 0 [PCH            ]: HDA-Intel - HDA Intel PCH\n"}}, true},
        {{{"asound/cards", ""}}, false},
        {{}, false}};
    for (const auto& c : cards)
        withProc(c.first,
                 [&] { EXPECT_EQ(isAlsaActive(), c.second) << (c.first.empty() ? "none" : c.first[0].second); });

    // The locale of the environment, LC_ALL before LANG.
    vyxtest::ScopedEnv all("LC_ALL", "de_DE.UTF-8"), lang("LANG", "fr_FR.UTF-8");
    EXPECT_STREQ(GetSystemLocale(), "de_DE.UTF-8");
    vyxtest::ScopedEnv noAll("LC_ALL", "");
    EXPECT_STREQ(GetSystemLocale(), "fr_FR.UTF-8");
    vyxtest::ScopedEnv noLang("LANG", nullptr);
    EXPECT_STREQ(GetSystemLocale(), "");
}

TEST(Edition, ModeAndEditionFromTheEditionFile)
{
    vyxtest::TempHome world;
    const struct {
        const char* content;
        bool se;
        int mode;
    } cases[] = {
        {"# installed edition\nedition = se\nmode=3\n", true, 3},
        {"edition=SE2\nmode=3x\n", false, 0},
        {"mode=-2\nmode=7\n", false, 7},
        {"mode=99999999999\n", false, 0},
        {nullptr, false, 0},  // no file at all
    };
    for (const auto& c : cases) {
        vyxtest::ChildOptions options;
        options.mounts = {c.content ? vyxtest::Mount::bind(world.writeFile("edition", c.content), "/etc/vyx/edition")
                                    : vyxtest::Mount::tmpfs("/etc/vyx")};
        VYX_EXPECT_CHILD(vyxtest::runInChild(options, [&] {
            SCOPED_TRACE(c.content ? c.content : "no file");
            EXPECT_EQ(isOrvelSE(), c.se);
            EXPECT_EQ(getOrvelMode(), c.mode);
        }));
    }
}

TEST(Network, AddressesAreNumericAndLoopbackIsLeftOut)
{
    for (const std::string& address : getIPv4Addresses()) {
        in_addr parsed;
        EXPECT_EQ(inet_pton(AF_INET, address.c_str(), &parsed), 1) << address;
        EXPECT_NE(address.rfind("127.", 0), 0u) << address;
    }
    for (const std::string& address : getIPv6Addresses()) {
        in6_addr parsed;
        EXPECT_EQ(inet_pton(AF_INET6, address.c_str(), &parsed), 1) << address;
        EXPECT_NE(address, "::1");
    }
    vyxtest::ChildOptions isolated;
    isolated.privateNetwork = true;  // only a loopback interface there, down
    VYX_EXPECT_CHILD(vyxtest::runInChild(isolated, [] {
        EXPECT_TRUE(getIPv4Addresses().empty());
        EXPECT_TRUE(getIPv6Addresses().empty());
    }));
}

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

// A login record file of our own, bound over the system's: only the
// records of user processes count.
TEST(Processes, CountsLoggedInSessions)
{
    vyxtest::TempHome world;
    std::string records;
    for (short type : {USER_PROCESS, DEAD_PROCESS, USER_PROCESS, LOGIN_PROCESS}) {
        utmpx record {};
        record.ut_type = type;
        records.append(reinterpret_cast<const char*>(&record), sizeof record);
    }
    vyxtest::ChildOptions options;
    options.mounts = {vyxtest::Mount::bind(world.writeFile("utmp", records), _PATH_UTMPX)};
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, [] { EXPECT_EQ(numWho(), 2); }));
}

}  // namespace
