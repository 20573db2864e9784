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

TEST(Exec, SingleFileQuotingAndAddedCode)
{
    ExecFormatString e = make("app");
    e.file = "/tmp/a b";
    EXPECT_EQ(e.toString(), "app \"/tmp/a b\"");
    EXPECT_EQ(e.file, nullptr);  // consumed

    e = make("app \"%f\"");
    e.file = "/tmp/a b";
    EXPECT_EQ(e.toString(), "app \"/tmp/a b\"");

    e = make("app %f %f");
    e.file = "/tmp/x";
    EXPECT_EQ(e.toString(), "app /tmp/x");

    e = make("%f --x");
    e.file = "it's";
    EXPECT_EQ(e.toString(), "\"it's\" --x");  // a code at the start is not behind a quote
}

TEST(Exec, ListsSeparatorsAndUrlFileParts)
{
    ExecFormatString e = make("app %F");
    e.urls = {"file:///x", "trash:/y"};
    e.separator = ' ';
    EXPECT_EQ(e.toString(), "app //x");

    e = make("app %F");
    e.files = {"/a", "/b c", "\"/d\""};
    e.separator = ' ';
    EXPECT_EQ(e.toString(), "app /a \"/b c\" \"/d\"");
    EXPECT_TRUE(e.files.empty());

    e = make("app %U --end");
    e.urls = {"trash:/y"};
    e.separator = ',';
    EXPECT_EQ(e.toString(), "app trash:/y --end");

    // Every URL skipped: the character before the code is dropped (kept).
    e = make("app %F");
    e.urls = {"trash:/y"};
    e.separator = ' ';
    EXPECT_EQ(e.toString(), "app");

    e = make("app %f");
    e.url = "file:///home/u/a b.txt";
    EXPECT_EQ(e.toString(), "app \"//home/u/a b.txt\"");
}

TEST(Exec, FallbacksBetweenFilesAndUrls)
{
    ExecFormatString e = make("app %u");
    e.files = {"\"/quoted\""};
    EXPECT_EQ(e.toString(), "app \"\"/quoted\"");  // the leading quote is doubled (kept)

    e = make("viewer %U");
    e.files = {"/a", "/b"};
    e.separator = ' ';
    EXPECT_EQ(e.toString(), "viewer /a /b");

    e = make("app %F %f");  // %F leaves the single file to %f
    e.file = "/single";
    EXPECT_EQ(e.toString(), "app  /single");
}

TEST(Exec, OtherCodes)
{
    EXPECT_EQ(make("app 100%").toString(), "");
    EXPECT_EQ(make("app %%").toString(), "app %%");
    EXPECT_EQ(make("app %d %n %v x").toString(), "app    x");
    EXPECT_EQ(make("").toString(), "");
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
