#include "support/temp_home.h"

#include <vyxcmdline.h>

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

using vyxtest::ScopedEnv;

struct Split {
    int code;
    std::vector<std::string> args;
    std::string redirect;
    std::string pipe;
    bool append;
};

// The record sits between guard bytes, so any write past it shows.
struct Guarded {
    unsigned char before[64];
    CmdLineInfo info;
    unsigned char after[64];
};

Split split(const std::string& line)
{
    auto guarded = std::make_unique<Guarded>();
    std::memset(guarded.get(), 0xA5, sizeof(Guarded));
    std::vector<char> cmd(CmdLineBufferSize + 64, '\x5A');
    std::memcpy(cmd.data(), line.c_str(), std::min(line.size() + 1, size_t(CmdLineBufferSize)));
    cmd[CmdLineBufferSize - 1] = '\0';

    Split result;
    CmdLineInfo& info = guarded->info;
    result.code = MakeArgVector(cmd.data(), &info);
    for (int i = 0; i < info.argc; ++i)
        result.args.emplace_back(info.argv[i]);
    result.redirect = info.redirectFile;
    result.pipe = info.pipeCommand;
    result.append = info.append == 1;

    EXPECT_EQ(info.error, result.code);
    EXPECT_NE(info.message, nullptr);
    EXPECT_EQ(info.message && info.message[0] == '\0', result.code == 0) << "message of code " << result.code;
    EXPECT_EQ(info.argv[info.argc], nullptr);
    EXPECT_EQ(info.argv[info.argc + 1], cmd.data());
    EXPECT_EQ(info.argv[info.argc + 2], reinterpret_cast<char*>(&info));
    EXPECT_EQ(info.argv[info.argc + 3], nullptr);
    for (unsigned char b : guarded->before)
        EXPECT_EQ(b, 0xA5);
    for (unsigned char b : guarded->after)
        EXPECT_EQ(b, 0xA5);
    for (size_t i = CmdLineBufferSize; i < cmd.size(); ++i)
        EXPECT_EQ(cmd[i], '\x5A');
    return result;
}

using Args = std::vector<std::string>;

TEST(CmdLine, WordsQuotesAndComments)
{
    EXPECT_EQ(split("  ls   -l  ").args, (Args{"ls", "-l"}));
    EXPECT_EQ(split("echo 'a b' # note").args, (Args{"echo", "a b"}));
    EXPECT_EQ(split("say \"it 'is' `odd`\"").args, (Args{"say", "it 'is' `odd`"}));
    // An apostrophe inside double quotes opens a span of its own, which only
    // an apostrophe closes: the double quote after it is text.
    EXPECT_EQ(split("say \"it's\" x").args, (Args{"say", "it's\" x"}));
    EXPECT_EQ(split("a \"\" b").args, (Args{"a", "", "b"}));
    EXPECT_EQ(split("open 'unterminated span").args, (Args{"open", "unterminated span"}));
    EXPECT_EQ(split("a#b c").args, (Args{"a"}));
    EXPECT_EQ(split("!cmd x!").args, (Args{"!", "cmd", "x!"}));
    EXPECT_EQ(split("\\101\\ b ^C^? \\").args, (Args{"A b", "\x03\x7f"}));
}

TEST(CmdLine, RedirectionAndPipe)
{
    Split out = split("ls -l > out.txt");
    EXPECT_EQ(out.code, 0);
    EXPECT_EQ(out.args, (Args{"ls", "-l"}));
    EXPECT_EQ(out.redirect, "out.txt");
    EXPECT_FALSE(out.append);
    Split app = split("ls>>log");
    EXPECT_EQ(app.args, (Args{"ls"}));
    EXPECT_EQ(app.redirect, "log");
    EXPECT_TRUE(app.append);
    Split piped = split("cat file |  sort -r\nignored");
    EXPECT_EQ(piped.args, (Args{"cat", "file"}));
    EXPECT_EQ(piped.pipe, "sort -r");
}

TEST(CmdLine, ErrorsClearTheArguments)
{
    const struct {
        const char* line;
        int code;
        const char* message;
    } cases[] = {
        {"a > f1 > f2", 3, "Cannot redirect output to more than one file"},
        {"a < f", 6, "Redirection of input not implemented"},
        {"a > f | b", 7, "Cannot redirect and pipe out at the same time"},
        {"a >", 4, "No filename supplied to redirect output to"},
        {"a |  ", 5, "No command supplied to pipe output to"},
        {"q \"'\"'\"'\"'\"'\"'\"'\"'x", 2, "Too many sets of quotes"},
    };
    for (const auto& c : cases) {
        std::vector<char> cmd(CmdLineBufferSize, 0);
        std::strcpy(cmd.data(), c.line);
        CmdLineInfo info;
        EXPECT_EQ(MakeArgVector(cmd.data(), &info), c.code) << c.line;
        EXPECT_EQ(info.argc, 0) << c.line;
        EXPECT_STREQ(info.message, c.message);
    }
    // Fifteen levels are still fine.
    EXPECT_EQ(split("q \"'\"'\"'\"'\"'\"'\"'\"x").code, 0);
}

TEST(CmdLine, VariablesAreExpandedFirst)
{
    ScopedEnv target("VYXT", "/tmp/out file"), words("VYX_W", "one two");
    // Unbraced names are letters and digits only: "$VYX_W" names VYX.
    EXPECT_EQ(split("echo ${VYX_W}x \\${VYX_W} $VYXUNSET42 $VYX_W $ $-").args,
              (Args{"echo", "one", "twox", "${VYX_W}", "$VYXUNSET42", "$VYX_W", "$", "$-"}));
    EXPECT_EQ(split("cmd > \"$VYXT\"").redirect, "/tmp/out file");
}

TEST(CmdLine, LimitsNeverOverflow)
{
    std::string many;
    for (int i = 0; i < 200; ++i)
        many += "w" + std::to_string(i) + " ";
    Split manyWords = split(many);
    ASSERT_EQ(manyWords.args.size(), 128u);
    EXPECT_EQ(manyWords.args.back(), "w127");

    Split huge = split(std::string(20000, 'x'));
    ASSERT_EQ(huge.args.size(), 1u);
    EXPECT_EQ(huge.args[0].size(), size_t(CmdLineBufferSize - 1));

    Split longFile = split("a > " + std::string(6000, 'f') + " | b");
    EXPECT_EQ(longFile.code, 7);

    Split bangs = split(std::string(16000, '!'));  // "!" words need no separator
    EXPECT_EQ(bangs.args.size(), 128u);

    std::string value(10000, 'v');
    ScopedEnv big("VYXBIG", value.c_str());
    Split expanded = split("$VYXBIG $VYXBIG tail");
    ASSERT_EQ(expanded.args.size(), 2u);
    EXPECT_EQ(expanded.args[0], value);
    EXPECT_EQ(expanded.args[1].size(), size_t(CmdLineBufferSize - 1 - 10001));
}

TEST(DollarVariables, BoundedInPlaceExpansion)
{
    ScopedEnv var("VYXV", "0123456789");
    char small[16] = "a $VYXV b";
    ExpandDollarVariables(small, sizeof small);
    EXPECT_STREQ(small, "a 0123456789 b");

    char tight[12];
    std::memset(tight, 'Z', sizeof tight);
    std::strcpy(tight, "<${VYXV}>");
    ExpandDollarVariables(tight, 11);
    EXPECT_STREQ(tight, "<012345678");  // cut at the last byte
    EXPECT_EQ(tight[11], 'Z');

    std::string longName = "$" + std::string(300, 'N');
    std::vector<char> buffer(longName.begin(), longName.end());
    buffer.push_back('\0');
    ExpandDollarVariables(buffer.data(), buffer.size());
    EXPECT_EQ(std::string(buffer.data()), longName);

    char unterminated[4] = {'a', 'b', 'c', 'd'};
    ExpandDollarVariables(unterminated, sizeof unterminated);
    EXPECT_STREQ(unterminated, "abc");
}

}  // namespace
