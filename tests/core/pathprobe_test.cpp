// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The directory probe answers as stat does for every kind of path under a
// root: directories, links to them, files, missing parents, dot parts.

#include "core/pathprobe_p.h"
#include "support/child_process.h"
#include "support/temp_home.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace {

bool statSays(const std::string& path)
{
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

TEST(DirectoryProbe, AnswersAsStatDoes)
{
    vyxtest::TempHome world;
    const std::string root = world.makeDir("theme");
    world.makeDir("theme/16x16/apps");
    world.makeDir("theme/16x16/places");
    world.makeDir("elsewhere/real");
    world.writeFile("theme/16x16/file", "x");
    world.writeFile("theme/notadir", "x");
    ASSERT_EQ(symlink("../elsewhere/real", (root + "/16x16/linked").c_str()), 0);
    ASSERT_EQ(symlink("file", (root + "/16x16/filelink").c_str()), 0);
    ASSERT_EQ(symlink("nowhere", (root + "/dangling").c_str()), 0);
    ASSERT_EQ(symlink("../elsewhere", (root + "/up").c_str()), 0);
    world.makeDir("theme/locked/inside");
    chmod((root + "/locked").c_str(), 0644);  // readable, not passable

    const char* const paths[] = {
        "16x16",       "16x16/apps",   "16x16/places", "16x16/missing", "16x16/file", "16x16/linked", "16x16/filelink",
        "notadir",     "notadir/x",    "missing/apps", "dangling",      "up/real",    "up",           "16x16/./apps",
        "16x16//apps", "../elsewhere", "16x16/apps/",  "locked/inside", "locked"};
    auto compare = [&] {
        Vyx::detail::DirectoryProbe probe(root);
        for (const char* path : paths)
            EXPECT_EQ(probe.isDirectory(path), statSays(root + "/" + path)) << path;
        Vyx::detail::DirectoryProbe missing(root + "/none");
        EXPECT_FALSE(missing.isDirectory("16x16"));
    };
    // As root the locked directory is passable anyway; the ordinary user
    // sees stat refuse it.
    compare();
    vyxtest::ChildOptions options;
    options.unprivileged = true;
    chmod(world.root().c_str(), 0755);
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, compare));
}

}  // namespace
