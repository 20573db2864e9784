// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The trash in a temporary home: names that collide, within one process and
// across four at once; records that are damaged or hold odd bytes; the size
// cache; emptying; and the failures users meet (another file system, a full
// disk), on real mounts.

#include "support/child_process.h"
#include "support/files.h"
#include "support/temp_home.h"
#include "support/text_checks.h"

#include <vyxdirs.h>
#include <vyxfileutils.h>
#include <vyxstrings.h>
#include <vyxtrash.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <regex>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using vyxtest::readFile;
using vyxtest::stderrOf;
using Names = std::vector<std::string>;
using vyxtest::fileMode;
using vyxtest::listDir;

// Objects of files/ that have no record, but the directory's ".directory".
Names unrecorded(const std::string& files, const std::string& info)
{
    Names lost;
    for (const std::string& name : listDir(files)) {
        if (name != ".directory" && access((info + "/" + name + ".trashinfo").c_str(), F_OK) != 0)
            lost.push_back(name);
    }
    return lost;
}

class Trash : public ::testing::Test {
protected:
    void SetUp() override
    {
        ResetVyxDirs();
        ASSERT_TRUE(getcwd(m_cwd, sizeof m_cwd));
    }
    void TearDown() override { EXPECT_EQ(chdir(m_cwd), 0); }

    std::string file(const std::string& relative, const std::string& content = "x")
    {
        return world.writeFile(relative, content);
    }
    // A record and its object, as another program may have left them.
    void plant(const std::string& name, const std::string& record, const std::string& object)
    {
        file("home/.local/share/Trash/info/" + name + ".trashinfo", record);
        file("home/.local/share/Trash/files/" + name, object);
    }

    vyxtest::TempHome world;
    const std::string trash = world.home() + "/.local/share/Trash";
    const std::string files = trash + "/files";
    const std::string info = trash + "/info";

private:
    char m_cwd[4096] = "";
};

TEST_F(Trash, NoObjectIsLostToANameTakenAndEqualNamesGetNumberedNamesUpTo10000)
{
    // An object with no record keeps its place; the next name is taken.
    const std::string stray = file("home/.local/share/Trash/files/notes.txt", "stray");
    const std::string original = file("notes.txt", "mine");
    ASSERT_TRUE(VyxTrash::moveToTrash(original.c_str()));
    EXPECT_EQ(readFile(stray), "stray");
    EXPECT_EQ(listDir(info), Names {"notes_0.txt.trashinfo"});

    // Nor is a new file at the original path replaced by the restore.
    file("notes.txt", "newer");
    EXPECT_EQ(stderrOf([&] { EXPECT_FALSE(VyxTrash::restoreFromTrash(original.c_str())); }),
              "vyxcore: can't restore file, rename(" + files + "/notes_0.txt," + original +
                  ") failed due to File exists\n");
    EXPECT_HAS(stderrOf([&] { EXPECT_FALSE(VyxTrash::moveToTrash(world.path("gone.txt").c_str())); }),
               "No such file or directory");
    EXPECT_EQ(readFile(original) + readFile(files + "/notes_0.txt"), "newermine");
    EXPECT_EQ(listDir(info), Names {"notes_0.txt.trashinfo"});

    const std::string first = file("a/report.txt", "1"), second = file("b/report.txt", "2");
    const std::string dot = file("b/.bashrc", "3"), tar = file("b/x.tar.gz", "4");
    for (const std::string& path : {first, second, file("a/.bashrc"), dot, file("a/x.tar.gz"), tar})
        ASSERT_TRUE(VyxTrash::moveToTrash((path + "/").c_str())) << path;
    EXPECT_EQ(listDir(files), (Names {".bashrc", "_0.bashrc", "notes.txt", "notes_0.txt", "report.txt", "report_0.txt",
                                      "x.tar.gz", "x_0.tar.gz"}));
    EXPECT_EQ(fileMode(info + "/report_0.txt.trashinfo"), 0600u);
    EXPECT_TRUE(std::regex_match(readFile(info + "/report_0.txt.trashinfo"),
                                 std::regex("\\[Trash Info\\]\nPath=" + Vyx::encodedUrl(second) +
                                            "\nDeletionDate=\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\n")));
    EXPECT_LE(std::abs(VyxTrash::getDeletionDate("report_0.txt") - time(nullptr)), 5);
    EXPECT_EQ(VyxTrash::getFilePathInTrash(second.c_str()), files + "/report_0.txt");
    EXPECT_EQ(VyxTrash::getFilePathToRestore((files + "/_0.bashrc").c_str()), dot);

    // Each of the three ways of naming an object.
    EXPECT_TRUE(VyxTrash::restoreFromTrash(second.c_str()));
    EXPECT_TRUE(VyxTrash::restoreFromTrash("_0.bashrc"));
    EXPECT_TRUE(VyxTrash::restoreFromTrash((files + "/x_0.tar.gz/").c_str()));
    EXPECT_EQ(readFile(second) + readFile(dot) + readFile(tar), "234");

    // The numbers end at 10000.
    for (int n = -1; n < 10000; ++n)
        close(creat((info + (n < 0 ? "/log" : "/log_" + std::to_string(n)) + ".txt.trashinfo").c_str(), 0600));
    EXPECT_EQ(VyxTrash::setPath("log.txt", "/var"), files + "/log_10000.txt");
    EXPECT_EQ(VyxTrash::getPath("log_10000.txt"), "/var/log.txt");
    EXPECT_EQ(VyxTrash::setPath("log.txt", "/var"), "");
    EXPECT_EQ(fileMode(info + "/log_10001.txt.trashinfo"), 0u);
}

TEST_F(Trash, RecordsDamagedOrHoldingOddBytesGetDefinedAnswers)
{
    const std::vector<std::pair<std::string, std::string>> records = {
        {"truncated", "[Trash Info]\nPa"},
        {"nopath", "[Trash Info]\nDeletionDate=2024-02-29T12:00:00\n"},
        {"baddate", "Path=/x/baddate\nDeletionDate=yesterday\n"},
        {"month13", "Path=/x/month13\nDeletionDate=2024-13-01T00:00:00\n"},
        {"binary", std::string("\0\xff\r\nPath=", 9) + std::string(9000, 'A') + "%4\n\nPath=%"},
        {"good", "[Trash Info]\r\nPath=/x/y%20z\nDeletionDate=2024-02-29T12:34:56\n"},
    };
    for (const auto& [name, record] : records)
        plant(name, record, name);
    EXPECT_EQ(VyxTrash::getPath("truncated"), "");
    EXPECT_EQ(VyxTrash::getDeletionDate("truncated"), -1);
    // A relative path is taken from the directory holding the trash.
    EXPECT_EQ(VyxTrash::getPath("binary"), world.home() + "/.local/share/" + std::string(9000, 'A') + "\x04");
    EXPECT_EQ(VyxTrash::getFileNameInTrash("/x/y z"), "good");
    struct tm local = {};
    local.tm_year = 124, local.tm_mon = 1, local.tm_mday = 29, local.tm_hour = 12, local.tm_min = 34;
    local.tm_sec = 56, local.tm_isdst = -1;
    EXPECT_EQ(VyxTrash::getDeletionDate((files + "/good").c_str()), mktime(&local));

    testing::internal::CaptureStderr();
    EXPECT_EQ(VyxTrash::getDeletionDate("baddate"), -1);
    EXPECT_EQ(VyxTrash::getDeletionDate("/x/month13"), -1);
    EXPECT_FALSE(VyxTrash::restoreFromTrash("nopath"));
    EXPECT_EQ(VyxTrash::getPath("absent"), "");
    EXPECT_EQ(VyxTrash::getPath("../info/good"), "");
    EXPECT_FALSE(VyxTrash::delPath("absent"));
    EXPECT_EQ(VyxTrash::getFileNameInTrash("relative/x"), "");
    EXPECT_EQ(VyxTrash::getFileNameInTrash((files + "/good").c_str()), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "vyxcore: can't convert 'DeletionDate=yesterday' to time_t\n"
              "vyxcore: can't convert 'DeletionDate=2024-13-01T00:00:00' to time_t\n"
              "vyxcore: can't find trashinfo file: " +
                  info +
                  "/absent.trashinfo\n"
                  "vyxcore: can't find trashinfo file: ../info/good\n"
                  "vyxcore: can't remove trashinfo file: " +
                  info +
                  "/absent.trashinfo\n"
                  "libvyxcore: path relative/x must be absolute original path before trash\n"
                  "libvyxcore: path " +
                  files + "/good must be absolute original path before trash\n");
    EXPECT_EQ(listDir(files).size() + listDir(info).size(), 2 * records.size());

    // Odd bytes in names survive the record.
    const Names names = {"50% off.txt", "two\nlines", "\xC3\xBC #?&=:.pdf", " lead", "end.", "%41%zz"};
    Names originals;
    for (const std::string& name : names) {
        originals.push_back(file("odd dir%/" + name, name));
        ASSERT_TRUE(VyxTrash::moveToTrash(originals.back().c_str()));
    }
    const std::string encoded = "\nPath=" + world.root() + "/odd%20dir%25/50%25%20off.txt\n";
    EXPECT_HAS(readFile(info + "/50% off.txt.trashinfo"), encoded);
    for (size_t i = 0; i < names.size(); ++i) {
        std::string record = readFile(info + "/" + names[i] + ".trashinfo");
        EXPECT_EQ(std::count(record.begin(), record.end(), '\n'), 3) << record;
        EXPECT_EQ(VyxTrash::getFileNameInTrash(originals[i].c_str()), names[i]);
        EXPECT_TRUE(VyxTrash::restoreFromTrash(names[i].c_str()));
        EXPECT_EQ(readFile(originals[i]), names[i]);
    }

    // A relative path is recorded from the current directory.
    const std::string inner = file("rel/sub/inner.txt");
    ASSERT_EQ(chdir(world.path("rel").c_str()), 0);
    EXPECT_TRUE(VyxTrash::moveToTrash("sub/inner.txt"));
    EXPECT_EQ(VyxTrash::getPath("inner.txt"), inner);
}

TEST_F(Trash, SizeTakesCachedDirectoriesWithoutWalkingThem)
{
    file("loose", std::string(10, 'l'));
    file("my dir/a", std::string(1000, 'a'));
    file("my dir/sub/b", std::string(2000, 'b'));
    file("plain/c", std::string(500, 'c'));
    for (const char* name : {"loose", "my dir", "plain"})
        ASSERT_TRUE(VyxTrash::moveToTrash(world.path(name).c_str()));
    EXPECT_EQ(VyxTrash::size(), 3510);

    VyxTrash::registerDirSize("my dir", -1);
    VyxTrash::registerDirSize("plain", 77777);  // a figure the disk does not hold
    const time_t plainTime = vyxtest::mtimeOf(info + "/plain.trashinfo");
    const std::string myLine = std::to_string(vyxtest::mtimeOf(info + "/my dir.trashinfo")) + " my%20dir";
    const std::string plainLine = "77777 " + std::to_string(plainTime) + " plain";
    EXPECT_EQ(readFile(trash + "/directorysizes"), "3000 " + myLine + "\n" + plainLine + "\n");

    // The cached figures are taken as they are: nothing below them is read.
    file("home/.local/share/Trash/files/my dir/new", std::string(4000, 'n'));
    EXPECT_EQ(VyxTrash::size(), 10 + 3000 + 77777);
    // A record newer than its line (the name taken again) is measured.
    ASSERT_TRUE(vyxtest::setMtime(info + "/plain.trashinfo", plainTime + 1));
    EXPECT_EQ(VyxTrash::size(), 10 + 3000 + 500);

    // Lines that do not read are skipped, so "my dir" is measured.
    const std::string kept = "garbage\n\n12 34\nx 1 my%20dir\n 3000 " + myLine + "\n3000  " + myLine + "\n";
    file("home/.local/share/Trash/directorysizes", kept + "99999999999999999999 " + myLine + "\n-5 " + myLine +
                                                       "\n3000 1e3 my%20dir\n77777 " + std::to_string(plainTime + 1) +
                                                       " plain");
    EXPECT_EQ(VyxTrash::size(), 10 + 7000 + 77777);
    // Dropping a name keeps every other line and leaves no temporary name.
    VyxTrash::unregisterDirSize("plain");
    EXPECT_EQ(readFile(trash + "/directorysizes").substr(0, kept.size()), kept);
    EXPECT_EQ(VyxTrash::size(), 10 + 7000 + 500);
    EXPECT_EQ(listDir(trash), (Names {"directorysizes", "files", "info"}));
}

TEST_F(Trash, FourProcessesTrashingEqualNamesKeepEveryFile)
{
    constexpr int kProcesses = 4, kFiles = 300;
    Names originals;
    for (int i = 0; i < kProcesses * kFiles; ++i) {
        // Each file holds its own path, so a record can be checked against
        // the object it names.
        std::string relative = "p" + std::to_string(i / kFiles) + "/f" + std::to_string(i % kFiles);
        originals.push_back(file(relative, world.path(relative)));
    }
    EXPECT_TRUE(vyxtest::runConcurrently(kProcesses, [&](int p) {
        for (int f = 0; f < kFiles; ++f) {
            if (!VyxTrash::moveToTrash(originals[p * kFiles + f].c_str()))
                _exit(1);
        }
    })) << "a put failed";

    // Every object comes back to the path that its own content names.
    const Names objects = listDir(files);
    ASSERT_EQ(objects.size(), originals.size());
    ASSERT_EQ(listDir(info).size(), originals.size());
    for (const std::string& name : objects)
        EXPECT_TRUE(VyxTrash::restoreFromTrash(name.c_str())) << name;
    for (const std::string& original : originals)
        EXPECT_EQ(readFile(original), original);
    EXPECT_TRUE(VyxTrash::isEmpty());
}

// An original on another file system, or a disk too full for the record:
// the file stays where it was and no record or cache line is left half made.
TEST_F(Trash, AnotherFileSystemOrAFullDiskLeavesNoHalfRecord)
{
    const std::string small = world.makeDir("small"), top = small + "/share/Trash";
    vyxtest::ChildOptions options;
    options.mounts = {vyxtest::Mount::tmpfs(small, "256k"), vyxtest::Mount::tmpfs(world.makeDir("other"))};
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, [&] {
        const std::string far = file("other/report.txt", "on tmpfs");
        EXPECT_EQ(stderrOf([&] { EXPECT_FALSE(VyxTrash::moveToTrash(far.c_str())); }),
                  "vyxcore: can't trash file, rename(" + far + "," + files +
                      "/report.txt) failed due to Invalid cross-device link, will try vyx-fops\n");
        EXPECT_EQ(readFile(far), "on tmpfs");
        EXPECT_EQ(listDir(info).size() + listDir(files).size(), 0u);

        vyxtest::ScopedEnv data("XDG_DATA_HOME", (small + "/share").c_str());
        ResetVyxDirs();
        const std::string original = file("small/docs/letter.txt", "dear disk");
        ASSERT_EQ(VyxTrash::getInfoDirPath() + VyxTrash::getFileDirPath(), top + "/info" + top + "/files");
        VyxTrash::registerDirSizeHelper("kept", 42);
        ASSERT_EQ(readFile(top + "/directorysizes"), "42 0 kept\n");

        // Fill every block: big writes first, then single bytes.
        const int fd = open((small + "/filler").c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
        const std::string block(4096, 'f');
        while (write(fd, block.data(), block.size()) > 0 || write(fd, "f", 1) > 0) { }
        ASSERT_EQ(errno, ENOSPC);
        close(fd);

        EXPECT_EQ(stderrOf([&] { EXPECT_FALSE(VyxTrash::moveToTrash(original.c_str())); }),
                  "vyxcore: can't create trashinfo file: " + top + "/info/letter.txt.trashinfo\n");
        EXPECT_EQ(readFile(original), "dear disk");
        EXPECT_EQ(listDir(top + "/info"), Names {});
        VyxTrash::registerDirSizeHelper("added", 7);
        EXPECT_EQ(readFile(top + "/directorysizes"), "42 0 kept\n");
        EXPECT_EQ(listDir(top), (Names {"directorysizes", "files", "info"}));

        // With room again the same put goes through.
        ASSERT_EQ(unlink((small + "/filler").c_str()), 0);
        EXPECT_TRUE(VyxTrash::moveToTrash(original.c_str()));
    }));
}

// Restoring takes only what lies directly in files/, read as written; of
// two records of one path the newest; and never a path the record does not
// give (a NUL in it, the caller's working directory for a relative one).
TEST_F(Trash, RestoreMovesOnlyWhatIsInTheTrash)
{
    const std::string old = file("old/notes.txt", "trashed"), current = file("docs/notes.txt", "current");
    ASSERT_TRUE(VyxTrash::moveToTrash(old.c_str()));
    testing::internal::CaptureStderr();
    EXPECT_FALSE(VyxTrash::restoreFromTrash((files + "/../../../../../docs/notes.txt").c_str()));
    EXPECT_FALSE(VyxTrash::restoreFromTrash((files + "/./notes.txt").c_str()));
    EXPECT_FALSE(VyxTrash::restoreFromTrash("../files/notes.txt"));
    EXPECT_EQ(VyxTrash::getFilePathToRestore((files + "/sub/../notes.txt").c_str()), "");
    EXPECT_HAS(testing::internal::GetCapturedStderr(), "not an object directly in the trash");
    EXPECT_EQ(readFile(current), "current");
    EXPECT_EQ(readFile(files + "/notes.txt"), "trashed");
    // A record named for ".." would hand over the trash itself: refused
    // before any rename is tried.
    const std::string dots = file("home/.local/share/Trash/info/...trashinfo",
                                  "[Trash Info]\nPath=" + world.path("taken") + "\nDeletionDate=2020-01-01T00:00:00\n");
    EXPECT_HAS(stderrOf([&] { EXPECT_FALSE(VyxTrash::restoreFromTrash((files + "/..").c_str())); }),
               "not an object directly in the trash");
    ASSERT_EQ(unlink(dots.c_str()), 0);

    // Two versions of one path: the newer comes back first, whatever the
    // order of the directory. Both records are listed until then.
    plant("a", "[Trash Info]\nPath=" + old + "\nDeletionDate=2020-01-01T00:00:00\n", "oldest");
    plant("z", "[Trash Info]\nPath=" + old + "\nDeletionDate=2030-01-01T00:00:00\n", "newest");
    ASSERT_TRUE(VyxTrash::restoreFromTrash(old.c_str()));
    EXPECT_EQ(readFile(old), "newest");
    EXPECT_EQ(listDir(info), (Names {"a.trashinfo", "notes.txt.trashinfo"}));

    // A relative Path= is under the directory holding the trash; a NUL or
    // nothing but slashes is no path at all.
    plant("rel.txt", "[Trash Info]\nPath=back/rel.txt\n", "relative");
    world.makeDir("home/.local/share/back");
    world.makeDir("elsewhere/back");
    ASSERT_EQ(chdir(world.path("elsewhere").c_str()), 0);
    ASSERT_TRUE(VyxTrash::restoreFromTrash("rel.txt"));
    EXPECT_EQ(readFile(world.home() + "/.local/share/back/rel.txt"), "relative");
    EXPECT_EQ(listDir(world.path("elsewhere/back")), Names {});
    const std::string victim = file("x/victim", "victim");
    for (const std::string& path : {world.path("x/victim%00.bak"), std::string("//")}) {
        plant("bad", "[Trash Info]\nPath=" + path + "\n", "bad");
        EXPECT_HAS(stderrOf([] { EXPECT_FALSE(VyxTrash::restoreFromTrash("bad")); }), "holds no usable path") << path;
        EXPECT_EQ(readFile(victim), "victim");
        EXPECT_EQ(readFile(files + "/bad"), "bad");
    }
}

// The trash's own parts are never trashed, and a trash whose files or info
// directory is a link (or not ours) is not used at all.
TEST_F(Trash, TheTrashItselfALinkedTrashOrNoHomeRefusedAndNoShellUsed)
{
    ASSERT_TRUE(VyxTrash::moveToTrash(file("kept.txt", "kept").c_str()));
    VyxTrash::registerDirSizeHelper("kept.txt", 1);
    testing::internal::CaptureStderr();
    for (const std::string& path : {info, files, trash, trash + "/directorysizes", info + "/kept.txt.trashinfo",
                                    files + "/kept.txt", trash + "/../Trash/info", info + "/../files/"})
        EXPECT_FALSE(VyxTrash::moveToTrash(path.c_str())) << path;
    EXPECT_HAS(testing::internal::GetCapturedStderr(), "part of the trash itself");
    EXPECT_EQ(listDir(info), Names {"kept.txt.trashinfo"});
    EXPECT_EQ(listDir(files), Names {"kept.txt"});
    ASSERT_TRUE(VyxTrash::restoreFromTrash("kept.txt"));

    // files/ a link to the user's documents: emptying must not touch them.
    const std::string docs = file("docs/thesis.tex", "years of work");
    vyxtest::removeTree(files);
    ASSERT_EQ(symlink(world.path("docs").c_str(), files.c_str()), 0);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(VyxTrash::cleanAll());
    EXPECT_FALSE(VyxTrash::moveToTrash(file("other.txt").c_str()));
    EXPECT_FALSE(VyxTrash::restoreFromTrash("thesis.tex"));
    EXPECT_EQ(VyxTrash::getFileDirPath(), "");
    EXPECT_HAS(testing::internal::GetCapturedStderr(), "not a directory of this user's");
    EXPECT_EQ(readFile(docs), "years of work");
    EXPECT_TRUE(fileExists(world.path("other.txt"), false));

    // The directories are made in code, never by a shell; and without a home
    // nothing is done.
    const std::string data = world.path("x$(touch pwned)/deep `touch pwned`;/share");
    vyxtest::ScopedEnv dataHome("XDG_DATA_HOME", data.c_str());
    ResetVyxDirs();
    ASSERT_EQ(chdir(world.root().c_str()), 0);
    ASSERT_TRUE(VyxTrash::moveToTrash(file("doc.txt", "d").c_str()));
    EXPECT_EQ(readFile(data + "/Trash/files/doc.txt"), "d");
    for (const std::string& dir : {world.path("x$(touch pwned)"), data, data + "/Trash", data + "/Trash/info"})
        EXPECT_EQ(fileMode(dir), 0700u) << dir;
    EXPECT_EQ(fileMode(world.path("pwned")), 0u);

    vyxtest::ScopedEnv noData("XDG_DATA_HOME", nullptr), noHome("HOME", nullptr), noLogname("LOGNAME", nullptr),
        noUser("USER", nullptr);
    ResetVyxDirs();
    const std::string kept = file("kept.txt", "k");
    EXPECT_EQ(VyxTrash::getFileDirPath() + VyxTrash::registerFile(kept.c_str()), "");
    EXPECT_FALSE(VyxTrash::moveToTrash(kept.c_str()) || VyxTrash::restoreFromTrash("doc.txt") || VyxTrash::cleanAll());
    EXPECT_EQ(readFile(kept), "k");
}

// Emptying goes object by object: what cannot be removed (here a mount
// point inside a trashed directory) keeps its record and the result says
// so; records without objects and objects without records go too. The
// files directory's ".directory" is no object: it stays, and a trash with
// only that is empty.
TEST_F(Trash, EmptyingKeepsTheRecordOfWhatStaysEvenKilledOrBesideAPut)
{
    EXPECT_TRUE(VyxTrash::isEmpty());
    const std::string dotDirectory = file("home/.local/share/Trash/files/.directory", "[Desktop Entry]\n");
    EXPECT_TRUE(VyxTrash::isEmpty());
    file("busy/inner/x");
    ASSERT_TRUE(VyxTrash::moveToTrash(world.path("busy").c_str()));
    ASSERT_TRUE(VyxTrash::moveToTrash(file("plain.txt").c_str()));
    file("home/.local/share/Trash/info/ghost.trashinfo", "[Trash Info]\nPath=/ghost\n");
    file("home/.local/share/Trash/info/.directory");
    file("home/.local/share/Trash/files/orphan", "no record");
    EXPECT_FALSE(VyxTrash::isEmpty());
    VyxTrash::registerDirSizeHelper("busy", 7);
    const std::string cache = readFile(trash + "/directorysizes");
    vyxtest::ChildOptions options;
    options.mounts.push_back(vyxtest::Mount::tmpfs(files + "/busy/inner"));
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, [&] {
        EXPECT_HAS(stderrOf([] { EXPECT_FALSE(VyxTrash::cleanAll()); }), files + "/busy");
        EXPECT_EQ(listDir(files), (Names {".directory", "busy"}));
        EXPECT_EQ(listDir(info), Names {"busy.trashinfo"});
    }));
    // Once it can go, the trash ends as emptying always left it.
    EXPECT_TRUE(VyxTrash::cleanAll());
    EXPECT_EQ(listDir(files), Names {".directory"});
    EXPECT_EQ(listDir(info), Names {});
    EXPECT_EQ(readFile(trash + "/directorysizes"), cache);
    EXPECT_TRUE(VyxTrash::isEmpty());
    EXPECT_EQ(VyxTrash::size(), int64_t(readFile(dotDirectory).size()));

    // Emptying killed at any moment, and emptying beside a process that puts,
    // never leaves an object that no record lists, but the one being removed.
    for (int round = 0; round < 6; ++round) {
        for (int i = 0; i < 150; ++i) {
            file("r/d" + std::to_string(i) + "/a/b", "x");
            ASSERT_TRUE(VyxTrash::moveToTrash(world.path("r/d" + std::to_string(i)).c_str()));
        }
        const pid_t pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            VyxTrash::cleanAll();
            _exit(0);
        }
        usleep(2000 + round * 3000);
        kill(pid, SIGKILL);
        ASSERT_EQ(waitpid(pid, nullptr, 0), pid);
        EXPECT_LE(unrecorded(files, info).size(), 1u) << "round " << round;
        ASSERT_TRUE(VyxTrash::cleanAll());
    }

    for (int i = 0; i < 300; ++i)
        file("q/f" + std::to_string(i), "x");
    EXPECT_TRUE(vyxtest::runConcurrently(2, [&](int p) {
        for (int i = 0; i < 300; ++i) {
            if (p == 0)
                VyxTrash::moveToTrash(world.path("q/f" + std::to_string(i)).c_str());
            else if (i % 10 == 0)
                VyxTrash::cleanAll();
        }
    }));
    EXPECT_EQ(unrecorded(files, info), Names {});
    EXPECT_TRUE(VyxTrash::cleanAll());
    EXPECT_EQ(listDir(files), Names {".directory"});
}

}  // namespace
