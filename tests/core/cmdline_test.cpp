// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/temp_home.h"

#include <vyxcmdline.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

namespace {

using vyxtest::ScopedEnv;

// The record and the command buffer sit between guard bytes, so any write
// past them shows.
struct Guarded {
    unsigned char before[64];
    CmdLineInfo info;
    unsigned char after[64];
};

// Splits line and writes the outcome as "[arg][arg] >file |pipe", or as
// "E<code> <message>" (plus any argument left behind) after an error. Checks
// the guards, the argv trailer and the stored code on the way.
std::string split(const std::string& line, std::string* cmdAfter = nullptr)
{
    auto guarded = std::make_unique<Guarded>();
    std::memset(guarded.get(), 0xA5, sizeof(Guarded));
    std::string cmd(CmdLineBufferSize + 64, '\x5A');
    std::memcpy(&cmd[0], line.c_str(), std::min(line.size() + 1, size_t(CmdLineBufferSize)));
    cmd[CmdLineBufferSize - 1] = '\0';

    CmdLineInfo& info = guarded->info;
    const int code = MakeArgVector(&cmd[0], &info);
    const int argc = info.argc;
    EXPECT_EQ(info.error, code);
    EXPECT_TRUE(info.argv[argc] == nullptr && info.argv[argc + 1] == &cmd[0] &&
                info.argv[argc + 2] == reinterpret_cast<char*>(&info) && info.argv[argc + 3] == nullptr);
    EXPECT_EQ(std::count(std::begin(guarded->before), std::end(guarded->before), 0xA5) +
                  std::count(std::begin(guarded->after), std::end(guarded->after), 0xA5),
              128);
    EXPECT_EQ(std::count(cmd.begin() + CmdLineBufferSize, cmd.end(), '\x5A'), 64);
    if (cmdAfter)
        *cmdAfter = cmd.c_str();

    std::string out;
    for (int i = 0; i < argc; ++i)
        out += std::string("[") + info.argv[i] + "]";
    if (code != 0)
        return out + "E" + std::to_string(code) + " " + (info.message ? info.message : "(null)");
    EXPECT_STREQ(info.message, "");
    if (info.redirectFile[0])
        out += (info.append ? " >>" : " >") + std::string(info.redirectFile);
    if (info.pipeCommand[0])
        out += " |" + std::string(info.pipeCommand);
    return out;
}

// Words, quotes, escapes, comments, redirection and pipes; an error
// clears the arguments.
TEST(CmdLine, SplitsLikeASmallShell)
{
    const struct {
        const char* line;
        const char* expected;
    } cases[] = {
        {"  ls   -l  ", "[ls][-l]"},
        {"say \"it 'is' `odd`\" '#' \"a\\\"b\" \"\"", "[say][it 'is' `odd`][#][a\"b][]"},
        // An apostrophe inside double quotes opens a span that only an
        // apostrophe closes, so the double quote after it is text; the span
        // left open at the end counts as closed.
        {"say \"it's\" x", "[say][it's\" x]"},
        {"!cmd x! a#b c", "[!][cmd][x!][a]"},
        {"\\101\\ b ^C^? \\", "[A b][\x03\x7f]"},
        // Exactly three digits, the rest stays text; 8 ends the octal value.
        {"\\1017 \\108x \\777 \\18", "[A7][\x08x][\xff][18]"},
        {"ls>>log x", "[ls][x] >>log"},
        {"cat file |  sort -r\nignored", "[cat][file] |sort -r"},
        {"q \"'\"'\"'\"'\"'\"'\"'\"x", "[q]['\"'\"'\"'\"'\"'\"'\"x]"},  // fifteen levels of quotes
        {"q \"'\"'\"'\"'\"'\"'\"'\"'x", "E2 Too many sets of quotes"},
        {"a > f1 > f2", "E3 Cannot redirect output to more than one file"},
        {"a > > f", "E3 Cannot redirect output to more than one file"},
        {"a < f", "E6 Redirection of input not implemented"},
        {"a >", "E4 No filename supplied to redirect output to"},
        {"a > |", "E4 No filename supplied to redirect output to"},
        {"a |  ", "E5 No command supplied to pipe output to"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(split(c.line), c.expected) << c.line;
    std::string cmdAfter;
    EXPECT_EQ(split("echo 'a b' # note", &cmdAfter), "[echo][a b]");
    EXPECT_EQ(cmdAfter, "echo 'a b' ");

    CmdLineInfo info;
    EXPECT_TRUE(MakeArgVector(nullptr, &info) == 0 && info.argc == 0);
    char line[CmdLineBufferSize] = "a b";
    EXPECT_EQ(MakeArgVector(line, nullptr), -1);
}

TEST(CmdLine, VariablesAreExpandedFirst)
{
    ScopedEnv target("VYXT", "/tmp/out file"), words("VYX_W", "one two"), hash("VYXH", "a#b");
    ScopedEnv empty("VYXEMPTY", ""), unset("VYXUNSET42", nullptr), prefix("VYX", nullptr);
    // Unbraced names are letters and digits only: "$VYX_W" names VYX.
    EXPECT_EQ(split("echo ${VYX_W}x \\${VYX_W} $VYXUNSET42 $VYXEMPTY $VYX_W $ $-"),
              "[echo][one][twox][${VYX_W}][$VYXUNSET42][$VYXEMPTY][$VYX_W][$][$-]");
    EXPECT_EQ(split("x $VYXH y"), "[x][a]");
    EXPECT_EQ(split("cmd > \"$VYXT\""), "[cmd] >/tmp/out file");
}

TEST(CmdLine, LimitsNeverOverflow)
{
    std::string many, kept, bangs;
    for (int i = 0; i < 200; ++i) {
        many += "w" + std::to_string(i) + " ";
        if (i < 128) {
            kept += "[w" + std::to_string(i) + "]";
            bangs += "[!]";
        }
    }
    EXPECT_EQ(split(many), kept);
    EXPECT_EQ(split(std::string(16000, '!')), bangs);  // "!" words need no separator

    EXPECT_EQ(split(std::string(20000, 'x')), "[" + std::string(CmdLineBufferSize - 1, 'x') + "]");
    EXPECT_EQ(split("a > " + std::string(6000, 'f')), "[a] >" + std::string(CmdLineFieldSize - 1, 'f'));
    EXPECT_EQ(split("a | " + std::string(6000, 'p')), "[a] |" + std::string(CmdLineFieldSize - 1, 'p'));

    std::string value(10000, 'v');
    ScopedEnv big("VYXBIG", value.c_str());
    // The second copy is cut where the command buffer ends; "tail" is lost.
    EXPECT_EQ(split("$VYXBIG $VYXBIG tail"),
              "[" + value + "][" + std::string(CmdLineBufferSize - 1 - 10001, 'v') + "]");
}

TEST(DollarVariables, BoundedInPlaceExpansion)
{
    ScopedEnv var("VYXV", "0123456789");
    char tight[12];
    std::memset(tight, 'Z', sizeof tight);
    std::strcpy(tight, "<${VYXV}>");
    ExpandDollarVariables(tight, 11);
    EXPECT_STREQ(tight, "<012345678");  // cut at the last byte
    EXPECT_EQ(tight[11], 'Z');

    // Names of 254 characters are looked up, longer braced ones are not.
    for (size_t length : {254, 255}) {
        std::string name(length, 'N'), reference = "${" + name + "}";
        ScopedEnv longVar(name.c_str(), "set");
        std::string buffer = reference;
        ExpandDollarVariables(&buffer[0], buffer.size() + 1);
        EXPECT_EQ(buffer.c_str(), length == 254 ? std::string("set") : reference);
    }

    char unterminated[4] = {'a', 'b', 'c', 'd'};
    ExpandDollarVariables(unterminated, sizeof unterminated);
    EXPECT_STREQ(unterminated, "abc");
}

}  // namespace
