// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore prefer, default --set and open: the real tool against the
// freedesktop tools in one tree, and real programs started for hostile
// file names.

#include "support/app_worlds.h"
#include "support/run_program.h"
#include "support/temp_home.h"
#include "support/text_checks.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace {

using vyxtest::ProgramRun;
using vyxtest::runProgram;
using vyxtest::runTool;
using vyxtest::ScopedEnv;
using vyxtest::TempHome;

const std::vector<std::string> kTypes = {"text/plain", "text/html",       "image/png",       "image/jpeg",
                                         "image/gif",  "application/pdf", "application/zip", "application/json",
                                         "audio/mpeg", "video/mp4",       "text/csv",        "application/x-tar"};

TEST(ToolPrefer, AgreesWithTheFreedesktopTools)
{
    if (access("/usr/bin/xdg-mime", X_OK) != 0 || access("/usr/bin/gio", X_OK) != 0)
        GTEST_SKIP() << "xdg-mime or gio is not installed (scripts/setup.sh installs them)";
    TempHome world;
    // An unknown desktop: xdg-mime then uses its generic, file-based way.
    ScopedEnv desktop("XDG_CURRENT_DESKTOP", "X-Agreement");
    // The system's data last, for the shared MIME database GIO needs.
    ScopedEnv dataDirs("XDG_DATA_DIRS", (world.path("usr/share") + ":/usr/share").c_str());
    // Their choice read by us, then ours written into the file they wrote and read by both.
    for (size_t i = 0; i < kTypes.size(); ++i) {
        const std::string first = "agree-first" + std::to_string(i) + ".desktop";
        const std::string second = "agree-second" + std::to_string(i) + ".desktop";
        for (const std::string& id : {first, second})
            vyxtest::writeApp(world, "usr/share/applications/" + id, kTypes[i] + ";");
        ASSERT_EQ(runProgram({"xdg-mime", "default", second, kTypes[i]}).status, 0);
        EXPECT_EQ(runTool({"prefer", kTypes[i]}).out.rfind(second + " ", 0), 0u) << kTypes[i];
        ProgramRun set = runTool({"default", kTypes[i], "--set", first});
        ASSERT_EQ(set.status, 0) << set.err;
        // The only line of "gio mime TYPE" where a colon and a blank come before an id.
        EXPECT_HAS(runProgram({"gio", "mime", kTypes[i]}).out, ": " + first + "\n");
        ProgramRun query = runProgram({"xdg-mime", "query", "default", kTypes[i]});
        EXPECT_EQ(query.out, first + "\n") << kTypes[i] << query.err;
    }
    ProgramRun refused = runTool({"default", "text/plain", "--set", "../etc/x.desktop"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_HAS(refused.err, "no installed application");
}

// Waits for the recorder started by "vyxcore open" and returns the
// arguments it received.
std::vector<std::string> recorded(const std::string& base, const std::string& toolOut)
{
    std::string::size_type at = toolOut.find("(pid ");
    EXPECT_NE(at, std::string::npos) << toolOut;
    if (at == std::string::npos)
        return {};
    const std::string path = base + "." + toolOut.substr(at + 5, toolOut.find(')', at) - at - 5);
    // Not our child: wait for its record to appear.
    for (int i = 0; i < 500 && access(path.c_str(), F_OK) != 0; ++i)
        usleep(10000);
    std::string text = vyxtest::readFile(path);
    std::vector<std::string> fields;
    for (size_t start = 0, end; (end = text.find('\0', start)) != std::string::npos; start = end + 1)
        fields.push_back(text.substr(start, end - start));
    return fields.size() > 2 ? std::vector<std::string>(fields.begin() + 2, fields.end()) : fields;
}

TEST(ToolOpen, OpensWithThePreferredApplicationAndNoShell)
{
    TempHome world;
    const std::string base = world.path("record");
    ScopedEnv record("VYX_ARGV_RECORD", base.c_str());
    world.writeFile("home/.local/share/applications/recorder.desktop",
                    "[Desktop Entry]\nType=Application\nName=Recorder\nExec=" VYX_ARGV_RECORDER
                    " --open %f\nMimeType=text/plain;\n");
    world.writeFile("home/.local/share/applications/other.desktop",
                    "[Desktop Entry]\nType=Application\nName=Other\nExec=" VYX_ARGV_RECORDER
                    " --other %U\nMimeType=text/x-other;\n");
    const std::string owned = world.path("owned");
    const std::string file = world.writeFile("files/$(touch " + owned + ").txt", "plain text\n");

    ProgramRun dry = runTool({"open", "--dry-run", "--json", file});
    ASSERT_EQ(dry.status, 0) << dry.err;
    EXPECT_HAS(dry.out, "\"types\": [\"text/plain\"]", "\"--open\", \"" + file + "\"]");

    ProgramRun opened = runTool({"open", file});
    ASSERT_EQ(opened.status, 0) << opened.err;
    EXPECT_EQ(recorded(base, opened.out), std::vector<std::string>({VYX_ARGV_RECORDER, "--open", file}));
    EXPECT_NE(access(owned.c_str(), F_OK), 0) << "a file name ran as a command";

    ProgramRun with = runTool({"open", "--with", "other.desktop", file, "https://example.org/?a=$(b)"});
    ASSERT_EQ(with.status, 0) << with.err;
    EXPECT_EQ(recorded(base, with.out),
              std::vector<std::string>({VYX_ARGV_RECORDER, "--other",
                                        "file://" + world.path("files/$(touch%20" + owned + ").txt"),
                                        "https://example.org/?a=$(b)"}));

    ProgramRun nothing = runTool({"open", world.writeFile("files/x.vyx-unknown-bin", std::string("\0\1\2", 3))});
    EXPECT_EQ(nothing.status, 1);
    EXPECT_HAS(nothing.err, "no application opens");
    EXPECT_EQ(runTool({"open", world.path("files/missing")}).status, 1);
    EXPECT_EQ(runTool({"open", "--with", "none.desktop", file}).status, 1);
}

}  // namespace
