// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Exec values turned into argument vectors, and applications launched with
// them: every file name arrives as exactly one argument, whatever it holds,
// and no shell ever sees it. And the older format string, which quotes one
// command line.

#include "support/temp_home.h"
#include "support/text_checks.h"

#include <vyxdesktopentry.h>
#include <vyxstrings.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using vyxtest::ScopedEnv;
using vyxtest::TempHome;
using Argv = std::vector<std::string>;
using Commands = std::vector<Argv>;

Commands expand(const char* exec, const Argv& targets, std::string* error = nullptr, const char* icon = "",
                const char* caption = "", const char* location = "")
{
    std::string ignored;
    return ExecToArgVectors(exec, targets, icon, caption, location, error ? error : &ignored);
}

// Names a hostile user could give a file: shell syntax of every kind,
// quotes, escapes, field codes, line breaks, invalid UTF-8, leading dashes.
std::vector<std::string> hostileNames(size_t count)
{
    // A table of pieces, not a list of lines.
    // clang-format off
    static const char* const pieces[] = {
        "$(touch owned)", "`touch owned`", "\"", "'", "\\", "\\\\\"", "\n", " ", "  ", "\t", "%f", "%%", "%U", "%",
        "-", "--help", "$HOME", "${IFS}", ";", "|", "&", ">", "<", "*", "?", "~", "#", "(", ")", "\xff\xfe", "\xc3",
        "\xe2\x82\xac", "a", "file.txt", "=", "\r", "\\s", "\\n", ":", "//"};
    // clang-format on
    std::mt19937 random(20);
    std::vector<std::string> names;
    for (size_t i = 0; i < count; ++i) {
        std::string name = i % 3 == 0 ? "-" : "";
        size_t parts = 1 + random() % 12;
        for (size_t p = 0; p < parts; ++p)
            name += pieces[random() % (sizeof pieces / sizeof *pieces)];
        if (i % 500 == 0)
            name += std::string(4000, "x$\"\\ "[i / 500 % 5]);
        names.push_back(name);
    }
    return names;
}

TEST(ExecArgv, HostileNamesStayWholeArguments)
{
    Argv all {"viewer", "-x"};
    for (const std::string& name : hostileNames(3000)) {
        const std::string path = "/data/" + name, url = "sftp://host/" + name;
        std::string error;
        ASSERT_EQ(expand("viewer --file %f", {path}, &error), Commands({{"viewer", "--file", path}})) << error;
        ASSERT_EQ(expand("\"/opt/my viewer\" %u", {url}), Commands({{"/opt/my viewer", url}}));
        // The URL made for a file comes back as the same file for %f.
        const std::string fileUrl = "file://" + Vyx::encodedUrl(path);
        EXPECT_EQ(expand("viewer %u", {path}), Commands({{"viewer", fileUrl}}));
        EXPECT_EQ(expand("viewer %f", {fileUrl}), Commands({{"viewer", path}}));
        all.push_back(path);
    }
    EXPECT_EQ(expand("viewer -x %F", Argv(all.begin() + 2, all.end())), Commands({all}));
}

TEST(ExecArgv, QuotingEscapesFieldCodesAndRefusals)
{
    // The value's own escapes first, then the command line's quoting.
    // An escaped blank is still a blank of the command line.
    EXPECT_EQ(expand(R"(prog "a b" c\sd "e\sf" "q\"u\`o\$t\\e" "keep\n" '' "")", {}),
              Commands({{"prog", "a b", "c", "d", "e f", "q\"u`o$t\\e", "keep\n", "''", ""}}));
    EXPECT_EQ(expand(R"(prog "back\\\\slash")", {}), Commands({{"prog", "back\\slash"}}));
    EXPECT_EQ(expand("prog \"100%%\" 50%% %i %c %k %d%D%n%N%v%m", {}, nullptr, "ico", "My App", "/a/b.desktop"),
              Commands({{"prog", "100%", "50%", "--icon", "ico", "My App", "/a/b.desktop"}}));
    EXPECT_EQ(expand("prog %i --name=%c", {}, nullptr, "", ""), Commands({{"prog", "--name="}}));
    // No file code: the files are still given, one process each.
    EXPECT_EQ(expand("prog --new", {"/a", "/b"}), Commands({{"prog", "--new", "/a"}, {"prog", "--new", "/b"}}));
    EXPECT_EQ(expand("prog %U", {"/a b", "https://x/?q=1"}), Commands({{"prog", "file:///a%20b", "https://x/?q=1"}}));
    EXPECT_EQ(expand("prog %F", {"file://localhost/a%20b", "file:/c"}), Commands({{"prog", "/a b", "/c"}}));
    EXPECT_EQ(expand("prog %f --x", {}), Commands({{"prog", "--x"}}));

    char cwd[4096];
    ASSERT_TRUE(getcwd(cwd, sizeof cwd));
    EXPECT_EQ(expand("prog %f", {"-rf"}), Commands({{"prog", std::string(cwd) + "/-rf"}}));

    // A 100 KB value is only long.
    std::string longArg(100 * 1024, 'y');
    EXPECT_EQ(expand(("prog " + longArg + " %f").c_str(), {"/a"}), Commands({{"prog", longArg, "/a"}}));

    // Invalid values are refused with their reason.
    for (const char* exec : {"prog \"unbalanced", "prog \"%f\"", "prog --files=%F", "prog x%U", "prog %i%c", "prog %x",
                             "prog %", "prog %f %U", "FOO=1 prog", "", "   ", "%f", "\"\" %f"}) {
        std::string error;
        EXPECT_TRUE(expand(exec, {"/a"}, &error).empty()) << exec;
        EXPECT_FALSE(error.empty()) << exec;
    }
    std::string error;
    EXPECT_TRUE(expand("prog %f", {"https://example.org/a"}, &error).empty());
    EXPECT_HAS(error, "https://example.org/a");
    EXPECT_TRUE(expand("prog %F", {"file:///a%00b"}, &error).empty());
    EXPECT_TRUE(ExecToArgVectors(nullptr, {}, nullptr, nullptr, nullptr, &error).empty());
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

TEST(Exec, FilesUrlsQuotingSeparatorsAndOtherCodes)
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
        {"app 100%", ""},
        {"", ""},
        {"app %%", "app %%"},
        {"app %d %n %v x", "app    x"},
    };
    for (const Case& c : cases) {
        ExecFormatString e {c.format, c.file, c.url, nullptr, nullptr, nullptr, c.files, c.urls, c.separator};
        EXPECT_EQ(e.toString(), c.expected) << c.format;
        EXPECT_EQ(e.file, nullptr) << c.format;
        EXPECT_TRUE(e.files.empty()) << c.format;
    }
    EXPECT_EQ(ExecFormatString().toString(), "");

    ExecFormatString e {
        "app %i %c %k", nullptr, nullptr, "foo", "My App", "/usr/share/applications/app.desktop", {}, {}};
    EXPECT_EQ(e.toString(), "app --icon foo \"My App\" /usr/share/applications/app.desktop");
    EXPECT_EQ(e.icon, nullptr);
    EXPECT_EQ(e.caption, nullptr);
}

// --- launching real programs ---

// Waits for each process and reads what the recorder wrote: its working
// directory, "null" when its standard input is /dev/null, its arguments.
// The entries run in the world's "tmp".
Commands collect(const std::string& base, const std::vector<int>& pids)
{
    Commands result;
    for (int pid : pids) {
        int status = 0;
        while (waitpid(pid, &status, 0) < 0 && errno == EINTR) { }
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
        std::string text = vyxtest::readFile(base + "." + std::to_string(pid));
        result.emplace_back();
        for (size_t start = 0, end; (end = text.find('\0', start)) != std::string::npos; start = end + 1)
            result.back().push_back(text.substr(start, end - start));
    }
    return result;
}

std::string writeEntry(const TempHome& world, const std::string& name, const std::string& keys)
{
    return world.writeFile("home/.local/share/applications/" + name,
                           "[Desktop Entry]\nType=Application\nName=Recorder\nPath=" + world.path("tmp") + "\n" + keys);
}

TEST(Launch, RealProgramReceivesEveryNameWholeInATerminalOrIsRefused)
{
    TempHome world;
    const std::string base = world.path("record");
    ScopedEnv record("VYX_ARGV_RECORD", base.c_str());
    const std::string owned = world.path("owned");
    // Few enough to keep the command line well under the system's limit:
    // the names' variety is ExecArgv's, this is their way into a process.
    std::vector<std::string> names = hostileNames(300);
    names.insert(names.end(), {"$(touch " + owned + ")", "`touch " + owned + "`", "\"; touch " + owned + "; \""});
    Argv paths;
    for (const std::string& name : names)
        paths.push_back("/files/" + name);

    VyxDesktopEntry many(writeEntry(world, "many.desktop", "Exec=" VYX_ARGV_RECORDER " --all %F\n"));
    // A pipe as our own input, so that one the program inherited would show
    // (ctest gives us /dev/null already).
    int input[2];
    ASSERT_EQ(pipe(input), 0);
    ASSERT_EQ(dup2(input[0], STDIN_FILENO), STDIN_FILENO);
    std::vector<int> pids;
    std::string error;
    ASSERT_GT(LaunchDesktopEntry(many, paths, &error, &pids), 0) << error;
    Argv expected {world.path("tmp"), "null", VYX_ARGV_RECORDER, "--all"};
    expected.insert(expected.end(), paths.begin(), paths.end());
    EXPECT_EQ(collect(base, pids), Commands {expected});
    EXPECT_NE(access(owned.c_str(), F_OK), 0) << "a file name ran as a command";

    // One process per file, each in the entry's working directory.
    VyxDesktopEntry single(writeEntry(world, "single.desktop", "Exec=" VYX_ARGV_RECORDER " %f\n"));
    Argv three(paths.end() - 3, paths.end());
    ASSERT_GT(LaunchDesktopEntry(single, three, nullptr, &pids), 0);
    Commands runs = collect(base, pids);
    ASSERT_EQ(runs.size(), 3u);
    for (size_t i = 0; i < 3; ++i)
        EXPECT_EQ(runs[i], Argv({world.path("tmp"), "null", VYX_ARGV_RECORDER, three[i]}));
    EXPECT_NE(access(owned.c_str(), F_OK), 0);

    std::string bin = world.makeDir("bin");
    ScopedEnv path("PATH", (bin + ":/usr/bin:/bin").c_str());
    VyxDesktopEntry inTerminal(writeEntry(world, "term.desktop", "Exec=" VYX_ARGV_RECORDER " %u\nTerminal=true\n"));

    // No terminal: refused, with the terminal named.
    if (access("/usr/bin/x-terminal-emulator", X_OK) != 0) {
        EXPECT_EQ(LaunchDesktopEntry(inTerminal, {"/a"}, &error), -1);
        EXPECT_HAS(error, "x-terminal-emulator");
    }
    ASSERT_EQ(symlink(VYX_ARGV_RECORDER, (bin + "/x-terminal-emulator").c_str()), 0);
    ASSERT_GT(LaunchDesktopEntry(inTerminal, {"/a b"}, &error, &pids), 0) << error;
    EXPECT_EQ(collect(base, pids),
              Commands({{world.path("tmp"), "null", "x-terminal-emulator", "-e", VYX_ARGV_RECORDER, "file:///a%20b"}}));

    const std::pair<std::string, const char*> refused[] = {
        {world.path("home/.local/share/applications/none.desktop"), "not installed"},
        {writeEntry(world, "absent.desktop", "Exec=vyx-no-such-program %f\n"), "not runnable here"},
        {writeEntry(world, "broken.desktop", "Exec=" VYX_ARGV_RECORDER " \"%f\n"), "invalid Exec"}};
    for (const auto& [file, reason] : refused) {
        EXPECT_EQ(LaunchDesktopEntry(VyxDesktopEntry(file), {"/a"}, &error), -1) << file;
        EXPECT_HAS(error, reason);
    }
}

}  // namespace
