// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include <vyxdesktopentry.h>

#include <gtest/gtest.h>

namespace {

ExecFormatString make(const char* format)
{
    ExecFormatString e;
    e.format = format;
    return e;
}

// One format with its inputs; toString() consumes the single file, the
// icon and the caption, and empties the file list.
struct Case {
    const char* format;
    const char* expected;
    const char* file = nullptr;
    const char* url = nullptr;
    std::vector<const char*> files = {};
    std::vector<const char*> urls = {};
    char separator = 0;
};

TEST(Exec, FilesUrlsQuotingAndSeparators)
{
    const Case cases[] = {
        {"app", "app \"/tmp/a b\"", "/tmp/a b"},  // the code is added when missing
        {"app \"%f\"", "app \"/tmp/a b\"", "/tmp/a b"},
        {"app %f %f", "app /tmp/x", "/tmp/x"},
        {"%f --x", "\"it's\" --x", "it's"},  // a code at the start is not behind a quote
        {"app %F", "app //x", nullptr, nullptr, {}, {"file:///x", "trash:/y"}, ' '},
        {"app %F", "app /a \"/b c\" \"/d\"", nullptr, nullptr, {"/a", "/b c", "\"/d\""}, {}, ' '},
        {"app %U --end", "app trash:/y --end", nullptr, nullptr, {}, {"trash:/y"}, ','},
        // Every URL skipped: the character before the code is dropped (kept).
        {"app %F", "app", nullptr, nullptr, {}, {"trash:/y"}, ' '},
        {"app %f", "app \"//home/u/a b.txt\"", nullptr, "file:///home/u/a b.txt"},
        {"app %u", "app \"\"/quoted\"", nullptr, nullptr, {"\"/quoted\""}},  // the leading quote is doubled (kept)
        {"viewer %U", "viewer /a /b", nullptr, nullptr, {"/a", "/b"}, {}, ' '},
        {"app %F %f", "app  /single", "/single"},  // %F leaves the single file to %f
    };
    for (const Case& c : cases) {
        ExecFormatString e = make(c.format);
        e.file = c.file;
        e.url = c.url;
        e.files = c.files;
        e.urls = c.urls;
        e.separator = c.separator;
        EXPECT_EQ(e.toString(), c.expected) << c.format;
        EXPECT_EQ(e.file, nullptr) << c.format;
        EXPECT_TRUE(e.files.empty()) << c.format;
    }
}

TEST(Exec, OtherCodes)
{
    for (const char* format : {"app 100%", ""})
        EXPECT_EQ(make(format).toString(), "") << format;
    EXPECT_EQ(make("app %%").toString(), "app %%");
    EXPECT_EQ(make("app %d %n %v x").toString(), "app    x");
    EXPECT_EQ(ExecFormatString().toString(), "");

    ExecFormatString e = make("app %i %c %k");
    e.icon = "foo";
    e.caption = "My App";
    e.location = "/usr/share/applications/app.desktop";
    EXPECT_EQ(e.toString(), "app --icon foo \"My App\" /usr/share/applications/app.desktop");
    EXPECT_EQ(e.icon, nullptr);
    EXPECT_EQ(e.caption, nullptr);
}

}  // namespace
