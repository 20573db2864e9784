// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/child_process.h"
#include "support/files.h"
#include "support/temp_home.h"
#include "support/text_checks.h"

#include <vyxfileutils.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

using vyxtest::ScopedEnv;
using vyxtest::TempHome;
using Strings = std::vector<std::string>;

const Vyx::tagged_bool<FilesOnly_tag> kFilesOnly(true), kAnyEntry(false);

TEST(FileList, DepthPatternAndHiddenEntries)
{
    TempHome world;
    for (const char* file : {"a.desktop", ".hidden", "notes.txt", "sub/b.desktop", "sub/deeper/c.desktop"})
        world.writeFile(std::string("apps/") + file, "");
    world.makeDir("apps/dir.desktop");
    std::string apps = world.path("apps");

    Strings names;
    EXPECT_TRUE(GetFileNameList(&names, apps.c_str(), 1, "*.desktop", kFilesOnly));
    EXPECT_EQ(vyxtest::sorted(names), (Strings {"a.desktop", "b.desktop"}));

    Strings paths;
    EXPECT_TRUE(GetFileList(&paths, (apps + "/").c_str(), 0, "*", kAnyEntry));
    EXPECT_EQ(vyxtest::sorted(paths),
              (Strings {apps + "/a.desktop", apps + "/dir.desktop", apps + "/notes.txt", apps + "/sub"}));

    Strings deep = {"kept"};
    EXPECT_TRUE(GetFileList(&deep, apps.c_str(), 5, "*.desktop", kAnyEntry));
    // A matching directory is listed but never entered.
    EXPECT_EQ(vyxtest::sorted(deep), (Strings {apps + "/a.desktop", apps + "/dir.desktop", apps + "/sub/b.desktop",
                                               apps + "/sub/deeper/c.desktop", "kept"}));

    EXPECT_FALSE(GetFileList(nullptr, apps.c_str(), 1, "*", kAnyEntry));
    EXPECT_FALSE(GetFileList(&paths, world.path("missing").c_str(), 1, "*", kAnyEntry));
    EXPECT_FALSE(GetFileList(&paths, apps.c_str(), 1, "*.none", kAnyEntry));
}

TEST(FileTests, ExistsExtensionAndPath)
{
    TempHome world;
    std::string empty = world.writeFile("empty", "");
    EXPECT_TRUE(fileExists(empty, false));
    EXPECT_FALSE(fileExists(empty, true));
    EXPECT_FALSE(fileExists(static_cast<const char*>(nullptr), false));

    EXPECT_TRUE(fileNameExtension("photo.jpg", 3));
    for (const auto& [name, length] : {std::pair("photo.jpeg", 3), {"photo.", 3}, {"dir.d/file", 8}, {"", 3}})
        EXPECT_FALSE(fileNameExtension(name, length)) << name;

    std::string bin = world.makeDir("bin");
    std::string tool = world.writeFile("bin/tool", "#!/bin/sh\n");
    chmod(tool.c_str(), 0755);
    world.writeFile("bin/plain", "");
    world.makeDir("bin/dir");
    ScopedEnv path("PATH", ("/nonexistent::" + bin).c_str());
    EXPECT_EQ(FindFileInPATH("tool"), tool);
    EXPECT_EQ(FindFileInPATH("plain"), "");
    EXPECT_EQ(FindFileInPATH("dir"), "");
    EXPECT_EQ(FindFileInPATH(tool.c_str()), tool);

    ASSERT_EQ(chdir(bin.c_str()), 0);
    ScopedEnv otherPath("PATH", "/nonexistent");
    EXPECT_EQ(FindFileInPATH("tool"), "./tool");
    ScopedEnv noPath("PATH", nullptr);
    EXPECT_EQ(FindFileInPATH("sh"), "/bin/sh");  // the built-in list
}

TEST(PathExpansion, TildeUserAndVariables)
{
    TempHome world;
    EXPECT_EQ(ExtractPathName("~"), world.home());
    EXPECT_EQ(ExtractPathName("~/docs"), world.home() + "/docs");
    EXPECT_EQ(ExtractPathName("~root/x"), "/root/x");
    EXPECT_EQ(ExtractPathName("plain/~x"), "plain/~x");
    EXPECT_EQ(ExtractPathName(nullptr), "");

    testing::internal::CaptureStderr();
    EXPECT_EQ(ExtractPathName("~nosuchuser42/x"), "~nosuchuser42/x");
    EXPECT_EQ(ExtractPathName("$NO_SUCH_VAR_42/rest"), "/rest");
    std::string longName(300, 'u');
    EXPECT_EQ(ExtractPathName(("~" + longName).c_str()), "~" + longName);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "No user nosuchuser42 or failed to get info\nNo environment variable NO_SUCH_VAR_42\n"
              "Too long before delim: " +
                  longName + "\n");

    ScopedEnv var("VYX_TEST_DIR", "/opt/place");
    EXPECT_EQ(ExtractPathName("$VYX_TEST_DIR/sub"), "/opt/place/sub");
    ScopedEnv noHome("HOME", nullptr);
    EXPECT_EQ(vyxtest::stderrOf([] { EXPECT_EQ(ExtractPathName("~/docs"), "/docs"); }),
              "Undefined environment variable HOME\n");
}

TEST(FileTree, CopyRemoveEmptinessAndSize)
{
    TempHome world;
    std::string content(10000, 'x');
    content[4095] = 'y';
    std::string src = world.writeFile("src/big.bin", content);
    std::string dest = world.makeDir("dest");
    EXPECT_TRUE(vyxCopyFile(src.c_str(), dest.c_str()));
    EXPECT_EQ(vyxtest::readFile(dest + "/big.bin"), content);
    // A missing source leaves the destination alone; a file is not copied onto itself.
    EXPECT_FALSE(vyxCopyFile(world.path("missing").c_str(), src.c_str()));
    EXPECT_FALSE(vyxCopyFile(src.c_str(), src.c_str()));
    EXPECT_EQ(vyxtest::readFile(src), content);
    EXPECT_EQ(vyxtest::stderrOf([&] { EXPECT_FALSE(vyxCopyFile(dest.c_str(), world.path("x").c_str())); }),
              "libvyxcore: can't copy folder to file\n");

    // Removing never follows links out of the tree.
    std::string outside = world.writeFile("outside/precious.txt", "keep me");
    world.writeFile("tree/.directory", "[Desktop Entry]\n");
    world.writeFile("tree/a/b/file", "x");
    ASSERT_EQ(symlink(world.path("outside").c_str(), world.path("tree/a/link").c_str()), 0);
    std::string tree = world.path("tree");

    const Vyx::tagged_bool<InsideOnly_tag> insideOnly(true), withTop(false);
    const Vyx::tagged_bool<KeepDotDirectoryFile_tag> keepDot(true);
    EXPECT_TRUE(rmdirRecursive(tree.c_str(), insideOnly, keepDot));
    EXPECT_TRUE(fileExists(tree + "/.directory", false));
    EXPECT_FALSE(fileExists(tree + "/a", false));
    EXPECT_EQ(vyxtest::readFile(outside), "keep me");
    EXPECT_TRUE(rmdirRecursive(tree.c_str(), withTop, keepDot));
    EXPECT_FALSE(fileExists(tree, false));
    EXPECT_FALSE(rmdirRecursive(tree.c_str(), withTop, keepDot));

    std::string dir = world.makeDir("d");
    const Vyx::tagged_bool<IgnoreDotDirectoryFile_tag> ignoreDot(true), countDot(false);
    EXPECT_TRUE(isDirEmpty(world.path("missing").c_str(), countDot));
    EXPECT_TRUE(isDirEmpty(dir.c_str(), countDot));
    world.writeFile("d/.directory", "12345");
    EXPECT_TRUE(isDirEmpty(dir.c_str(), ignoreDot));
    EXPECT_FALSE(isDirEmpty(dir.c_str(), countDot));

    world.writeFile("d/sub/a", std::string(100, 'a'));
    ASSERT_EQ(symlink("/usr/share/some/long/target", world.path("d/sub/link").c_str()), 0);
    EXPECT_EQ(vyxSizeOfPath(dir.c_str()), 5 + 100 + 27);  // a link counts its own size
    EXPECT_EQ(vyxSizeOfPath(world.path("missing").c_str()), 0);
}

TEST(NumberedPath, FirstFreeNameAndReuse)
{
    TempHome world;
    std::string dir = world.makeDir("n");
    const Vyx::tagged_bool<DeleteAndReuseIfNotBusy_tag> keep(false), reuse(true);
    EXPECT_EQ(MakeNewNumberedPath(dir.c_str(), "file", ".txt", keep), std::make_pair(dir + "/file.txt", -1));
    world.writeFile("n/file.txt", "");
    world.writeFile("n/file0.txt", "");
    EXPECT_EQ(MakeNewNumberedPath(dir.c_str(), "file", ".txt", keep), std::make_pair(dir + "/file1.txt", 1));
    EXPECT_EQ(MakeNewNumberedPath(dir.c_str(), "file", ".txt", true, true, 2, 10, keep),
              std::make_pair(dir + "/file (2).txt", 2));
    EXPECT_EQ(MakeNewNumberedPath(dir.c_str(), "file", nullptr, false, false, 1, 1, keep),
              std::make_pair(dir + "/file", 0));
    EXPECT_EQ(MakeNewNumberedPath(dir.c_str(), "file", ".txt", false, false, 0, 1, keep),
              std::make_pair(std::string(), -1));
    // Nobody holds file.txt open: it is removed and its name reused.
    EXPECT_EQ(MakeNewNumberedPath(dir.c_str(), "file", ".txt", reuse), std::make_pair(dir + "/file.txt", -1));
    EXPECT_FALSE(fileExists(dir + "/file.txt", false));
}

TEST(Links, ResolveAndRelativeLinks)
{
    TempHome world;
    std::string target = world.writeFile("home/Documents/report.odt", "r");
    world.makeDir("home/Desktop/deep");
    std::string link = world.home() + "/Desktop/deep/report";
    EXPECT_TRUE(makeRelativeSymlink(target.c_str(), link.c_str()));
    char text[256] = {};
    ASSERT_GT(readlink(link.c_str(), text, sizeof text - 1), 0);
    EXPECT_STREQ(text, "../../Documents/report.odt");
    EXPECT_FALSE(makeRelativeSymlink("/etc/passwd", (world.home() + "/p").c_str()));

    const Vyx::tagged_bool<CheckExists_tag> check(true);
    char real[PATH_MAX];
    ASSERT_NE(realpath(target.c_str(), real), nullptr);
    EXPECT_EQ(resolveSymLink("~/Desktop/deep/report", check), real);
    EXPECT_EQ(resolveSymLink(world.path("nothing").c_str(), check), "");
    EXPECT_EQ(resolveSymLink("", check), "");
}

TEST(BusyPath, SeesAHolderCannotBeInjectedAndNeedsFuser)
{
    TempHome world;
    std::string file = world.writeFile("held.txt", "x");
    for (const std::string& path : {file, std::string(), world.path("missing")})
        EXPECT_FALSE(isPathBusy(path.c_str())) << path;

    int fd = open(file.c_str(), O_RDONLY);
    ASSERT_GE(fd, 0);
    EXPECT_TRUE(isPathBusy(file.c_str()));
    close(fd);

    // A name a shell would run: it must stay a name.
    std::string evil = world.writeFile("a; touch injected #", "x");
    EXPECT_FALSE(isPathBusy(evil.c_str()));
    EXPECT_FALSE(fileExists(world.path("injected"), false));

    // Without fuser nothing is busy.
    vyxtest::ChildOptions options;
    options.mounts = {vyxtest::Mount::tmpfs("/bin")};
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, [&] {
        int fd = open(file.c_str(), O_RDONLY);
        EXPECT_FALSE(isPathBusy(file.c_str()));
        close(fd);
    }));
}

const Vyx::tagged_bool<LockRead_tag> kWrite(false), kRead(true);
const Vyx::tagged_bool<BlockingCall_tag> kWait(true), kNoWait(false);

// Locks are per process: the other side must be a real second process. This
// one holds the lock until the child has tried it, then lets go while the
// child waits.
TEST(FileLock, SecondProcessFailsOrWaitsAndBadDescriptorsAreReported)
{
    vyxtest::TempHome world;
    const std::string path = world.writeFile("lockfile", ""), tried = world.path("tried");
    const int fd = open(path.c_str(), O_RDWR);
    ASSERT_TRUE(vyxLockFile(fd, kWrite, kNoWait));
    std::thread release([&] {
        for (int i = 0; i < 5000 && access(tried.c_str(), F_OK) != 0; ++i)
            usleep(2000);
        usleep(100000);  // the child is waiting by now
        EXPECT_TRUE(vyxUnlockFile(fd));
    });
    VYX_EXPECT_CHILD(vyxtest::runInChild({}, [&] {
        const int other = open(path.c_str(), O_RDWR);
        EXPECT_FALSE(vyxLockFile(other, kWrite, kNoWait));
        EXPECT_FALSE(vyxLockFile(other, kRead, kNoWait));
        world.writeFile("tried", "");
        EXPECT_TRUE(vyxLockFile(other, kWrite, kWait));  // returns once the parent let go
    }));
    release.join();
    close(fd);

    EXPECT_EQ(vyxtest::stderrOf([] {
                  EXPECT_FALSE(vyxLockFile(-1, kRead, kNoWait));
                  EXPECT_FALSE(vyxUnlockFile(-1));
              }),
              "VyxLockedFile::lock(): fcntl: Bad file descriptorVyxLockedFile::lock(): fcntl: Bad file descriptor");
}

}  // namespace
