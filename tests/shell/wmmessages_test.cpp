// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "shell/wmmessages_p.h"
#include "support/child_process.h"
#include "support/temp_home.h"

#include <vyxsession.h>

#include <gtest/gtest.h>

#include <climits>
#include <thread>

namespace {

using vyxtest::ScopedEnv;

// The catalogue is loaded once per process from the window manager's fixed
// data directory: each load happens in a child, with the test's directory
// bound over "/usr/share/vyx-wm".
class WmMessages : public ::testing::Test {
protected:
    void inCatalogue(const std::function<void()>& body)
    {
        vyxtest::ChildOptions options;
        options.mounts = {vyxtest::Mount::bind(m_world.makeDir("vyx-wm"), "/usr/share/vyx-wm")};
        VYX_EXPECT_CHILD(vyxtest::runInChild(options, body));
    }
    void write(const std::string& name, const std::string& content) { m_world.writeFile("vyx-wm/" + name, content); }

    vyxtest::TempHome m_world;
    ScopedEnv m_lcAll {"LC_ALL", nullptr}, m_lang {"LANG", nullptr}, m_language {"LANGUAGE", nullptr};
};

TEST_F(WmMessages, LinesOfTheLocalesFileOrAnotherTerritoryOrNothing)
{
    const std::string longLine = std::string(100 * 1024, 'x') + "end";
    write("de_DE.UTF-8.msg", "Hallo\n \t\"  quoted, blanks inside kept \"\t \n\n \t \nC:\\temp\\new stays\n"
                             "ends in a backslash\\\nnext\n\"\n\"only opening\n" +
                                 longLine + "\nno newline");
    write("de_AT.msg", "Servus\n");
    ScopedEnv lang("LANG", "de_DE.UTF-8");
    inCatalogue([&] {
        EXPECT_EQ(GetVyxWMMessageLocale(), "de_DE");
        const char* first = GetVyxWMMessage(0, "fallback");
        EXPECT_STREQ(first, "Hallo");  // a translation beats the fallback
        EXPECT_EQ(GetVyxWMMessage(0, nullptr), first);
        EXPECT_STREQ(GetVyxWMMessage(1, nullptr), "  quoted, blanks inside kept ");
        EXPECT_STREQ(GetVyxWMMessage(2, nullptr), "");
        EXPECT_STREQ(GetVyxWMMessage(2, "filled"), "filled");  // an empty line takes the first fallback
        EXPECT_STREQ(GetVyxWMMessage(2, "other"), "filled");
        EXPECT_STREQ(GetVyxWMMessage(3, "blank"), "blank");
        EXPECT_STREQ(GetVyxWMMessage(4, nullptr), "C:\\temp\\new stays");
        EXPECT_STREQ(GetVyxWMMessage(5, nullptr), "ends in a backslash\\");
        EXPECT_STREQ(GetVyxWMMessage(6, nullptr), "next");
        EXPECT_STREQ(GetVyxWMMessage(7, nullptr), "");
        EXPECT_STREQ(GetVyxWMMessage(8, nullptr), "\"only opening");
        EXPECT_EQ(GetVyxWMMessage(9, nullptr), longLine);
        EXPECT_STREQ(GetVyxWMMessage(10, nullptr), "no newline");
        EXPECT_STREQ(GetVyxWMMessage(12, "new"), "new");
        EXPECT_STREQ(GetVyxWMMessage(11, nullptr), "");
        EXPECT_EQ(GetVyxWMMessage(-1, "x"), nullptr);
    });
    EXPECT_EQ(Vyx::detail::catalogueText("\t\"a\\\nb\\n\\\" \n"), "a\nb\\n\\");

    // Another territory of a preferred language, or nothing.
    write("xx.msg", "not xx_*\n");
    write("fr_FR.UTF-8.msg", "Bonjour\n");
    {
        ScopedEnv french("LANG", "fr_CA.UTF-8"), language("LANGUAGE", "xx:fr");
        inCatalogue([] {
            EXPECT_EQ(GetVyxWMMessage(-1, nullptr), nullptr);
            EXPECT_EQ(GetVyxWMMessageLocale(), "fr_FR");
            EXPECT_STREQ(GetVyxWMMessage(0, "Hello"), "Bonjour");
        });
    }
    ScopedEnv japanese("LANG", "ja_JP.UTF-8");
    inCatalogue([] {
        EXPECT_STREQ(GetVyxWMMessage(5, "x"), "x");
        EXPECT_EQ(GetVyxWMMessage(INT_MAX, "huge"), nullptr);
        EXPECT_EQ(GetVyxWMMessageLocale(), "");
    });
}

TEST_F(WmMessages, ThreadsShareOneTable)
{
    std::string lines;
    for (int i = 0; i < 50; ++i)
        lines += "message " + std::to_string(i) + "\n";
    write("en_GB.msg", lines);
    ScopedEnv lang("LANG", "en_GB");
    inCatalogue([] {
        constexpr int kThreads = 6, kIndexes = 200;
        std::vector<std::vector<const char*>> seen(kThreads, std::vector<const char*>(kIndexes));
        std::vector<std::thread> threads;
        for (int t = 0; t < kThreads; ++t) {
            threads.emplace_back([&seen, t] {
                const std::string fallback = "thread " + std::to_string(t);
                for (int i = 0; i < kIndexes; ++i) {
                    const int index = (i * 7 + t) % kIndexes;  // each thread in its own order
                    seen[t][index] = GetVyxWMMessage(index, fallback.c_str());
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        for (int i = 0; i < kIndexes; ++i) {
            const std::string text = GetVyxWMMessage(i, nullptr);
            EXPECT_EQ(text.substr(0, i < 50 ? std::string::npos : 7),
                      i < 50 ? "message " + std::to_string(i) : "thread ");
            for (int t = 0; t < kThreads; ++t)
                EXPECT_EQ(seen[t][i], GetVyxWMMessage(i, nullptr)) << i;  // one text per index, for everyone
        }
    });
}

}  // namespace
