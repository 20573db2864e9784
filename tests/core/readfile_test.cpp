// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The probes every reader of outside files goes through: only regular files
// are opened, and the directory probe answers as stat does.

#include "core/inireader_p.h"
#include "core/pathprobe_p.h"
#include "core/readfile_p.h"
#include "support/child_process.h"
#include "support/temp_home.h"
#include "support/unix_socket.h"

#include "vyxfileutils.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Vyx::detail::fopenRegularFile;
using Vyx::detail::openRegularFile;
using Vyx::detail::readRegularDescriptor;
using Vyx::detail::readRegularFile;

// Everything that is not a file is refused as a missing file is, at once,
// and so is a file the user may not read; the INI reader answers no
// differently.
TEST(ReadFile, OnlyRegularFilesAndNeverBlocking)
{
    vyxtest::TempHome world;
    alarm(10);  // a blocking open of the FIFO would hang here
    const std::string fifo = world.path("fifo"), socketPath = world.path("socket");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const int listener = vyxtest::bindUnixSocket(socketPath);
    ASSERT_GE(listener, 0);
    std::string out = "stale";
    for (const std::string& path : {fifo, socketPath, world.home(), std::string("/dev/null"), world.path("missing")}) {
        errno = 0;
        EXPECT_EQ(openRegularFile(path.c_str()), -1) << path;
        EXPECT_EQ(errno, ENOENT) << path;
        EXPECT_EQ(fopenRegularFile(path.c_str()), nullptr) << path;
        EXPECT_FALSE(readRegularFile(path.c_str(), out)) << path;
        EXPECT_EQ(out, "") << path;
        EXPECT_FALSE(Vyx::detail::IniReader().loadFile(path)) << path;
    }
    // Copies go through it too: nothing is created for what cannot be read.
    EXPECT_FALSE(vyxCopyFile(fifo.c_str(), world.path("copy").c_str()));
    EXPECT_NE(access(world.path("copy").c_str(), F_OK), 0);
    close(listener);
    alarm(0);

    const std::string secret = world.writeFile("secret.ini", "[A]\nk=v\n");
    chmod(secret.c_str(), 0600);
    vyxtest::ChildOptions options;
    options.unprivileged = true;
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, [&] {
        Vyx::detail::IniReader reader;
        EXPECT_FALSE(reader.loadFile(secret));
        EXPECT_EQ(reader.groupCount(), 0u);
    }));
}

TEST(ReadFile, ReadsTheWholeFileWhateverItsReportedSize)
{
    vyxtest::TempHome world;
    const std::string content = std::string(100000, 'x') + std::string("\0tail", 5);
    const std::string path = world.writeFile("big", content);
    std::string out;
    // The reader gets a blocking descriptor: a short read is the file's end.
    const int fd = openRegularFile(path.c_str());
    ASSERT_GE(fd, 0);
    EXPECT_EQ(fcntl(fd, F_GETFL) & O_NONBLOCK, 0);
    EXPECT_NE(fcntl(fd, F_GETFD) & FD_CLOEXEC, 0);
    ASSERT_EQ(lseek(fd, 7, SEEK_SET), 7);
    ASSERT_TRUE(readRegularDescriptor(fd, out));
    EXPECT_EQ(out, content);
    EXPECT_EQ(lseek(fd, 0, SEEK_CUR), 7) << "the caller's offset is kept";
    close(fd);

    // /proc reports size 0 for files that are not empty.
    ASSERT_TRUE(readRegularFile("/proc/self/status", out));
    EXPECT_NE(out.find("\nPid:"), std::string::npos) << out;
}

// Directories, links to them, files, missing parents, dot parts.
bool statSays(const std::string& path)
{
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

TEST(DirectoryProbe, AnswersAsStatDoes)
{
    vyxtest::TempHome world;
    const std::string root = world.makeDir("theme");
    for (const char* dir : {"theme/16x16/apps", "theme/16x16/places", "elsewhere/real", "theme/locked/inside"})
        world.makeDir(dir);
    world.writeFile("theme/16x16/file", "x");
    world.writeFile("theme/notadir", "x");
    for (const auto& [target, link] : {std::pair("../elsewhere/real", "16x16/linked"),
                                       {"file", "16x16/filelink"},
                                       {"nowhere", "dangling"},
                                       {"../elsewhere", "up"}})
        ASSERT_EQ(symlink(target, (root + "/" + link).c_str()), 0);
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
