// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include <vyxstrings.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <random>
#include <type_traits>

namespace {

using Strings = std::vector<std::string>;

const unsigned char* u(const char* text)
{
    return reinterpret_cast<const unsigned char*>(text);
}

TEST(Strings, SplitJoinAndQuoting)
{
    EXPECT_EQ(Vyx::split("a,,b,", ","), (Strings {"a", "b"}));  // empty fields dropped
    EXPECT_EQ(Vyx::split(",,", ","), Strings {});
    EXPECT_EQ(Vyx::split("a b\tc", " \t"), (Strings {"a", "b", "c"}));  // any of the delimiters
    EXPECT_EQ(Vyx::join({}, ";"), "");
    EXPECT_EQ(Vyx::join({"a", "", "c"}, "; "), "a; ; c");
    EXPECT_EQ(Vyx::join({"a", "b"}, nullptr), "ab");

    // Only what the shell needs is escaped; "$" stays for the shell.
    const std::pair<std::string, std::string> quoted[] = {
        {"", ""},     {"plain-word", "plain-word"}, {"it's", "\"it's\""},           {"a\"b", "\"a\\\"b\""},
        {"\t", "\t"}, {"a $HOME", "\"a $HOME\""},   {"caf\xc3\xa9", "caf\xc3\xa9"}, {"a\\b `c`", "\"a\\\\b \\`c\\`\""}};
    for (const auto& [text, expected] : quoted)
        EXPECT_EQ(Vyx::quoteArg(text), expected) << text;
    EXPECT_FALSE(Vyx::needDoublequotes(nullptr));
    int special = 0;
    for (int c = 0; c < 256; ++c)
        special += Vyx::isSpecial(static_cast<char>(c));
    EXPECT_EQ(special, 22);  // control bytes, DEL and bytes >= 128 are not special
}

TEST(Strings, FileNamePiecesSectionsAndEdges)
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

    EXPECT_TRUE(Vyx::startsWith("abc", ""));
    EXPECT_TRUE(Vyx::endsWith(std::string("abc"), ""));
    EXPECT_FALSE(Vyx::endsWith("c", "abc"));
    EXPECT_FALSE(Vyx::startsWith(std::string("ab"), std::string("abc")));
    EXPECT_EQ(Vyx::makeString(nullptr), "");
    char* copy = Vyx::newStringCopy(std::string("a\0b", 3));
    EXPECT_EQ(std::string(copy, 4), std::string("a\0b\0", 4));
    delete[] copy;
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

TEST(Url, EncodeKeepsTheSafeAsciiSetAndDecodeUndoesIt)
{
    EXPECT_EQ(Vyx::encodedUrl("a b/\xc3\xbc"), "a%20b/%C3%BC");
    EXPECT_EQ(Vyx::encodedUrl("/$-_.+!*'()"), "/$-_.+!*'()");
    EXPECT_EQ(Vyx::encodedUrl("%?&#=:~"), "%25%3F%26%23%3D%3A%7E");
    EXPECT_EQ(Vyx::encodedUrl(std::string("\x7f\x80\xff")), "%7F%80%FF");
    // Decoding is unvalidated; a "%" near the end decodes the digits that
    // are there and ends.
    const std::pair<const char*, std::string> decoded[] = {
        {"%41%2f", "A/"}, {"a+b", "a+b"},   {"%zz!", std::string("\0!", 2)},
        {"%4g", "\x04"},  {"x%4", "x\x04"}, {"x%", std::string("x\0", 2)}};
    for (const auto& [text, expected] : decoded)
        EXPECT_EQ(Vyx::decodedUrl(text), expected) << text;
    std::mt19937 random(12345);
    for (int round = 0; round < 2000; ++round) {
        std::string text(random() % 40, ' ');
        for (char& c : text)
            c = static_cast<char>(1 + random() % 255);
        ASSERT_EQ(Vyx::decodedUrl(Vyx::encodedUrl(text)), text);
    }
}

TEST(Url, Utf8StructureAndEscapedUtf8)
{
    // Overlong and the old five-byte forms are accepted.
    for (const char* good : {"",
                             "\xef\xbb\xbf"
                             "abc",
                             "caf\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80", "\xc0\x80", "\xf8\x88\x80\x80\x80"})
        EXPECT_TRUE(Vyx::isValidUtf8(u(good))) << good;
    for (const char* bad : {"ab\xc3", "\x80", "a\xfe", "\xc3("})
        EXPECT_FALSE(Vyx::isValidUtf8(u(bad))) << bad;

    // An escape is needed, and valid text behind it; "%4" is too short.
    EXPECT_TRUE(Vyx::isEscapedUtf8(u("%C3%BC"), nullptr));
    for (const char* bad : {"abc", "%FF", "%4"})
        EXPECT_FALSE(Vyx::isEscapedUtf8(u(bad), nullptr)) << bad;
    unsigned char out[32];
    std::memset(out, 'Z', sizeof out);
    EXPECT_TRUE(Vyx::isEscapedUtf8(u("a%20b%4g%"), out));
    EXPECT_STREQ(reinterpret_cast<char*>(out), "a b4g%");  // lone digit: only "%" dropped
    std::memset(out, 'Z', sizeof out);
    EXPECT_FALSE(Vyx::isEscapedUtf8(u("%a"), out));
    EXPECT_EQ(out[0], 'Z');  // untouched for short texts
}

}  // namespace
