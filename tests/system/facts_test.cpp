// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/child_process.h"
#include "support/temp_home.h"

#include <vyxsystem.h>

#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sys/stat.h>

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

TEST(Facts, LightPlatformBoundaries)
{
    withProc({{"cpuinfo", cpu("999.900")}, {"meminfo", memory(8000000)}}, [] {
        EXPECT_EQ(GetCPUMhz(), 999u);
        EXPECT_TRUE(lightPlatform());
    });
    withProc({{"cpuinfo", cpu("1500.000")}, {"meminfo", memory(253679)}}, [] {
        EXPECT_EQ(GetMemTotal(), 253679u);
        EXPECT_TRUE(lightPlatform());
    });
    withProc({{"cpuinfo", cpu("1000.000")}, {"meminfo", memory(253680)}}, [] { EXPECT_FALSE(lightPlatform()); });
    // Unknown figures never make a platform light.
    withProc({{"cpuinfo", "processor\t: 0\n"}, {"meminfo", "MemFree: 5 kB\n"}}, [] {
        EXPECT_EQ(GetCPUMhz(), 0u);
        EXPECT_EQ(GetMemTotal(), 0u);
        EXPECT_FALSE(lightPlatform());
    });
}

TEST(Facts, FirstProcessorAndBadRates)
{
    const struct {
        std::string cpuinfo;
        unsigned mhz;
    } cases[] = {
        {cpu("1800.5") + cpu("700.0"), 1800},  // the first processor decides
        {"cpu MHz 1200\n", 0},  // no ":"
        {"cpu MHz\t: inf\n", 0},
        {"cpu MHz\t: 999999999999\n", 0},  // does not fit
        {"cpu MHz\t: -5\n", 0},
    };
    for (const auto& c : cases) {
        withProc({{"cpuinfo", c.cpuinfo}, {"meminfo", memory(8000000)}}, [&] {
            EXPECT_EQ(GetCPUMhz(), c.mhz) << c.cpuinfo;
            EXPECT_FALSE(lightPlatform()) << c.cpuinfo;
        });
    }
}

// Figures are read once per process; the tail of a long line is no line of
// its own: the first line is cut by a line reader with a small buffer exactly
// where a "MemTotal:" text starts.
TEST(Facts, MemoryReadOnceAndSoundCards)
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
}

TEST(Facts, Locale)
{
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
        {"", false, 0},
    };
    for (const auto& c : cases) {
        vyxtest::ChildOptions options;
        options.mounts = {vyxtest::Mount::bind(world.writeFile("edition", c.content), "/etc/vyx/edition")};
        VYX_EXPECT_CHILD(vyxtest::runInChild(options, [&] {
            EXPECT_EQ(isOrvelSE(), c.se) << c.content;
            EXPECT_EQ(getOrvelMode(), c.mode) << c.content;
        }));
    }
    vyxtest::ChildOptions none;
    none.mounts = {vyxtest::Mount::tmpfs("/etc/vyx")};
    VYX_EXPECT_CHILD(vyxtest::runInChild(none, [] {
        EXPECT_FALSE(isOrvelSE());
        EXPECT_EQ(getOrvelMode(), 0);
    }));
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
    isolated.privateNetwork = true;  // only a loopback interface there
    VYX_EXPECT_CHILD(vyxtest::runInChild(isolated, [] {
        EXPECT_TRUE(getIPv4Addresses().empty());
        EXPECT_TRUE(getIPv6Addresses().empty());
    }));
}

}  // namespace
