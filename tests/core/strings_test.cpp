// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include <vyxstrings.h>

#include <gtest/gtest.h>

#include <climits>
#include <type_traits>

namespace {

using Strings = std::vector<std::string>;

TEST(Strings, SplitAndJoin)
{
    EXPECT_EQ(Vyx::split("a,,b,", ","), (Strings {"a", "b"}));  // empty fields dropped
    EXPECT_EQ(Vyx::split(",,", ","), Strings {});
    EXPECT_EQ(Vyx::split("a b\tc", " \t"), (Strings {"a", "b", "c"}));  // any of the delimiters
    const char input[] = "x:y";
    Vyx::split(input, ":");
    EXPECT_STREQ(input, "x:y");  // the input is never written
    EXPECT_EQ(Vyx::join({}, ";"), "");
    EXPECT_EQ(Vyx::join({"a", "", "c"}, "; "), "a; ; c");
    EXPECT_EQ(Vyx::join({"a", "b"}, nullptr), "ab");
}

TEST(Strings, QuotingEscapesOnlyWhatTheShellNeeds)
{
    EXPECT_EQ(Vyx::quoteArg(""), "");
    EXPECT_EQ(Vyx::quoteArg("plain-word"), "plain-word");
    EXPECT_EQ(Vyx::quoteArg("it's"), "\"it's\"");
    EXPECT_EQ(Vyx::quoteArg("a\"b"), "\"a\\\"b\"");
    EXPECT_EQ(Vyx::quoteArg("a\\b `c`"), "\"a\\\\b \\`c\\`\"");
    EXPECT_EQ(Vyx::quoteArg("a $HOME"), "\"a $HOME\"");  // "$" stays for the shell
    EXPECT_EQ(Vyx::quoteArg("\t"), "\t");
    EXPECT_EQ(Vyx::quoteArg(std::string("caf\xc3\xa9")), "caf\xc3\xa9");
    EXPECT_FALSE(Vyx::needDoublequotes(nullptr));

    int special = 0;
    for (int c = 0; c < 256; ++c)
        special += Vyx::isSpecial(static_cast<char>(c));
    EXPECT_EQ(special, 22);  // control bytes, DEL and bytes >= 128 are not special
}

TEST(Strings, FileNamePiecesAndSections)
{
    EXPECT_EQ(Vyx::baseName("dir/a.tar.gz"), "a");
    EXPECT_EQ(Vyx::completeBaseName("dir/a.tar.gz"), "a.tar");
    EXPECT_EQ(Vyx::baseName("/x/.hidden"), "");
    EXPECT_EQ(Vyx::completeBaseName("/x/.hidden"), "");
    EXPECT_EQ(Vyx::completeBaseName("/x/name"), "name");
    EXPECT_EQ(Vyx::baseName("a.b/c"), "c");  // dots before the last slash do not count

    EXPECT_EQ(Vyx::lastSection("abc", '/'), "");
    EXPECT_EQ(Vyx::lastSection("a/b/c", '/'), "c");
    for (std::string text : {"abc", "a/b/c"}) {
        const bool cut = text != "abc";
        EXPECT_EQ(Vyx::cutLastSection(text, '/'), cut);
        EXPECT_EQ(text, cut ? "a/b" : "abc");
    }

    // A leading separator ends the backward walk.
    const struct {
        const char* text;
        int index;
        const char* expected;
    } sections[] = {{"a/b/c", 0, "a"},   {"a/b/c", 2, "c"}, {"a/b/c", 3, ""}, {"a/b/c", -1, "c"},
                    {"a/b/c", -3, "a"},  {"a/b/c", -4, ""}, {"a/b/", 2, ""},  {"a/b/", -1, ""},
                    {"/a", 1, "a"},      {"/a", -2, ""},    {"", -1, ""},     {"a/b", INT_MIN, ""},
                    {"a/b", INT_MAX, ""}};
    for (const auto& c : sections)
        EXPECT_EQ(Vyx::section(c.text, '/', c.index), c.expected) << c.text << " " << c.index;
}

TEST(Strings, ComparisonsOnEdges)
{
    EXPECT_TRUE(Vyx::startsWith("abc", ""));
    EXPECT_TRUE(Vyx::endsWith(std::string("abc"), ""));
    EXPECT_FALSE(Vyx::endsWith("c", "abc"));
    EXPECT_FALSE(Vyx::startsWith(std::string("ab"), std::string("abc")));
    EXPECT_EQ(Vyx::makeString(nullptr), "");
    char* copy = Vyx::newStringCopy(std::string("a\0b", 3));
    EXPECT_EQ(std::string(copy, 4), std::string("a\0b\0", 4));
    delete[] copy;
}

TEST(Strings, ConcatAppendsEveryKindOfArgument)
{
    const char* null = nullptr;
    char array[] = "arr";
    std::string s = "str";
    EXPECT_EQ(Vyx::concat(), "");
    EXPECT_EQ(Vyx::concat("a", null, array, s, '/', 42, -7, 3u, 10LL), "aarrstr/42-7310");
}

// The flag type only exists to be spelled out at the call site.
struct OtherTag { };
static_assert(std::is_constructible_v<Vyx::tagged_bool<FilesOnly_tag>, bool>);
static_assert(!std::is_convertible_v<bool, Vyx::tagged_bool<FilesOnly_tag>>);
static_assert(!std::is_constructible_v<Vyx::tagged_bool<FilesOnly_tag>, int>);
static_assert(!std::is_constructible_v<Vyx::tagged_bool<FilesOnly_tag>, Vyx::tagged_bool<OtherTag>>);
static_assert(!std::is_convertible_v<Vyx::tagged_bool<FilesOnly_tag>, bool>);
static_assert(static_cast<bool>(Vyx::tagged_bool<FilesOnly_tag>(true)) && !Vyx::tagged_bool<FilesOnly_tag>(false));

}  // namespace
