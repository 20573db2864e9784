// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include <vyxstrings.h>

#include <gtest/gtest.h>

#include <cstring>
#include <random>

namespace {

const unsigned char* u(const char* text)
{
    return reinterpret_cast<const unsigned char*>(text);
}

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

TEST(Url, Utf8Structure)
{
    // Overlong and the old five-byte forms are accepted.
    for (const char* good : {"",
                             "\xef\xbb\xbf"
                             "abc",
                             "caf\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80", "\xc0\x80", "\xf8\x88\x80\x80\x80"})
        EXPECT_TRUE(Vyx::isValidUtf8(u(good))) << good;
    for (const char* bad : {"ab\xc3", "\x80", "a\xfe", "\xc3("})
        EXPECT_FALSE(Vyx::isValidUtf8(u(bad))) << bad;
}

TEST(Url, EscapedUtf8NeedsAnEscapeAndValidText)
{
    EXPECT_FALSE(Vyx::isEscapedUtf8(u("abc"), nullptr));
    EXPECT_TRUE(Vyx::isEscapedUtf8(u("%C3%BC"), nullptr));
    EXPECT_FALSE(Vyx::isEscapedUtf8(u("%FF"), nullptr));
    EXPECT_FALSE(Vyx::isEscapedUtf8(u("%4"), nullptr));  // too short to hold an escape

    unsigned char out[32];
    std::memset(out, 'Z', sizeof out);
    EXPECT_TRUE(Vyx::isEscapedUtf8(u("a%20b%4g%"), out));
    EXPECT_STREQ(reinterpret_cast<char*>(out), "a b4g%");  // lone digit: only "%" dropped

    std::memset(out, 'Z', sizeof out);
    EXPECT_FALSE(Vyx::isEscapedUtf8(u("%a"), out));
    EXPECT_EQ(out[0], 'Z');  // untouched for short texts
}

}  // namespace
