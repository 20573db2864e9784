// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// MIME type detection: rules pinned on small databases the test writes, and
// the real shared MIME database as Debian installs it.

#include "mime/globmatch_p.h"
#include "mime/mimedb_p.h"
#include "mime/mimetext_p.h"
#include "support/files.h"
#include "support/temp_home.h"

#include <vyxfileutils.h>
#include <vyxmime.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <fnmatch.h>
#include <fstream>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using vyxtest::TempHome;

std::string magicLine(int indent, int offset, const std::string& value, const std::string& extra = "")
{
    std::string line = (indent ? std::to_string(indent) : "") + ">" + std::to_string(offset) + "=";
    line += static_cast<char>(value.size() >> 8);
    line += static_cast<char>(value.size() & 0xFF);
    return line + value + extra + "\n";
}

// A database of our own in the user's data directory; no other.
class OwnDatabase : public ::testing::Test {
protected:
    void SetUp() override
    {
        world.writeFile("home/.local/share/mime/globs2", "# weight:type:pattern\n"
                                                         "50:text/x-own:*.own\n"
                                                         "60:text/x-heavy:*.own\n"
                                                         "50:application/x-longer:*.tar.own\n"
                                                         "50:text/x-case:*.C:cs\n"
                                                         "50:text/x-lower:*.c\n"
                                                         "50:text/x-literal:Ownfile\n"
                                                         "40:application/x-tie-a:*.tie\n"
                                                         "40:application/x-tie-b:*.tie\n"
                                                         "50:image/x-glob:img-*.dat\n"
                                                         "45:video/x-both-bin:*.both\n"
                                                         "45:text/x-both-text:*.both\n"
                                                         "50:application/x-dropped:__NOGLOBS__\n");
        world.writeFile("usr/share/mime/globs2", "50:application/x-dropped:*.drop\n50:text/x-system:*.sys\n");
        world.writeFile("home/.local/share/mime/aliases", "text/x-old-own text/x-own\n");
        world.writeFile("home/.local/share/mime/subclasses", "text/x-own text/x-base\ntext/x-base text/plain\n"
                                                             "application/x-loop application/x-loop2\n"
                                                             "application/x-loop2 application/x-loop\n");
        world.writeFile("home/.local/share/mime/icons", "text/x-own:own-icon\n");
        world.writeFile("home/.local/share/mime/generic-icons", "text/x-own:text-x-generic\n");
        std::string magic = std::string("MIME-Magic\0\n", 12);
        magic += "[80:image/x-nested]\n" + magicLine(0, 0, "NEST") + magicLine(1, 4, "ED") + magicLine(1, 4, "OK");
        magic += "[50:application/x-ranged]\n" + magicLine(0, 0, "ZZ", "+8");
        magic += "[40:application/x-masked]\n" + magicLine(0, 0, std::string("\xF0", 1), std::string("&\xF0", 2));
        magic += "[30:text/x-heavy]\n" + magicLine(0, 0, "HEAVY");
        world.writeFile("home/.local/share/mime/magic", magic);
    }
    void TearDown() override { xdg_mime_shutdown(); }

    TempHome world;
};

// Names: weight before length, case-sensitive globs apart, literals
// ignoring case too, __NOGLOBS__ dropping the system's globs, ties giving no
// answer.
TEST_F(OwnDatabase, NamesByKindWeightAndLengthAndMagic)
{
    const std::pair<const char*, const char*> names[] = {
        {"a.own", "text/x-heavy"},  {"a.tar.own", "text/x-heavy"},     {"/dir.c/x.C", "text/x-case"},
        {"X.c", "text/x-lower"},    {"OWNFILE", "text/x-literal"},     {"img-12.dat", "image/x-glob"},
        {"a.sys", "text/x-system"}, {"a.drop", xdg_mime_type_unknown}, {"a.tie", xdg_mime_type_unknown}};
    for (const auto& [name, type] : names)
        EXPECT_STREQ(xdg_mime_get_mime_type_from_file_name(name), type) << name;
    const char* types[4];
    EXPECT_EQ(xdg_mime_get_mime_types_from_file_name("a.tie", types, 4), 2);
    EXPECT_EQ(xdg_mime_get_mime_types_from_file_name("a.tie", types, 1), 1);
    EXPECT_STREQ(xdg_mime_get_mime_type_from_file_name(std::string(10000, 'n').c_str()), xdg_mime_type_unknown);

    // Magic: nesting, ranges, masks and priority.
    int priority = -1;
    EXPECT_STREQ(xdg_mime_get_mime_type_for_data("NESTOK..", 8, &priority), "image/x-nested");
    EXPECT_EQ(priority, 80);
    EXPECT_STREQ(xdg_mime_get_mime_type_for_data("NESTNO..", 8, &priority), "text/plain");  // child fails
    EXPECT_EQ(priority, 0);
    // The range takes offsets 0 to 7.
    const std::pair<std::string, const char*> contents[] = {
        {"......ZZ", "application/x-ranged"}, {".......ZZ", "application/x-ranged"}, {"........ZZ", "text/plain"},
        {"\xF7\x01", "application/x-masked"}, {"\x01\x02", xdg_mime_type_unknown},   {"", xdg_mime_type_empty}};
    for (const auto& [data, type] : contents)
        EXPECT_STREQ(xdg_mime_get_mime_type_for_data(data.data(), data.size(), nullptr), type) << data;
    EXPECT_EQ(xdg_mime_get_max_buffer_extents(), 10);  // 0 + 8 + 2
}

TEST_F(OwnDatabase, FilesNameFirstThenContent)
{
    std::string dir = world.makeDir("files");
    // A name that ties is settled by the content; names of the same weight:
    // a text file takes the text type, other data the type the database
    // lists first (not the first by name). A name still names an empty file.
    const struct {
        const char* name;
        std::string content;
        const char* type;
    } files[] = {{"x.own", "HEAVY text", "text/x-heavy"},
                 {"a.both", "plain words", "text/x-both-text"},
                 {"b.both", std::string("\x01\x02\x03", 3), "video/x-both-bin"},
                 {"noname", "NESTED", "image/x-nested"},
                 {"empty", "", xdg_mime_type_empty},
                 {"empty.sys", "", "text/x-system"}};
    for (const auto& file : files) {
        const std::string path = world.writeFile(std::string("files/") + file.name, file.content);
        EXPECT_STREQ(xdg_mime_get_mime_type_for_file(path.c_str(), nullptr), file.type) << file.name;
    }
    EXPECT_STREQ(xdg_mime_get_mime_type_for_file(dir.c_str(), nullptr), "inode/directory");
    std::string fifo = world.path("files/pipe");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_STREQ(xdg_mime_get_mime_type_for_file(fifo.c_str(), nullptr), "inode/fifo");
    std::string link = world.path("files/link");
    ASSERT_EQ(symlink("noname", link.c_str()), 0);
    struct stat st;
    ASSERT_EQ(lstat(link.c_str(), &st), 0);
    EXPECT_STREQ(xdg_mime_get_mime_type_for_file(link.c_str(), &st), "inode/symlink");
    EXPECT_STREQ(xdg_mime_get_mime_type_for_file(world.path("files/missing").c_str(), nullptr), xdg_mime_type_unknown);
}

TEST_F(OwnDatabase, AliasesParentsIconsAndValidNames)
{
    EXPECT_STREQ(xdg_mime_unalias_mime_type("text/x-old-own"), "text/x-own");
    EXPECT_TRUE(xdg_mime_mime_type_equal("text/x-old-own", "text/x-own"));
    EXPECT_TRUE(xdg_mime_mime_type_subclass("text/x-old-own", "text/x-base"));
    EXPECT_TRUE(xdg_mime_mime_type_subclass("text/x-own", "text/plain"));
    EXPECT_TRUE(xdg_mime_mime_type_subclass("text/x-anything", "text/plain"));  // implicit
    EXPECT_TRUE(xdg_mime_mime_type_subclass("image/png", "application/octet-stream"));
    EXPECT_FALSE(xdg_mime_mime_type_subclass("inode/directory", "application/octet-stream"));
    EXPECT_TRUE(xdg_mime_mime_type_subclass("image/png", "image/*"));
    EXPECT_FALSE(xdg_mime_mime_type_subclass("application/x-loop", "text/plain"));  // a loop ends
    char** parents = xdg_mime_list_mime_parents("text/x-old-own");
    ASSERT_NE(parents, nullptr);
    EXPECT_STREQ(parents[0], "text/x-base");
    EXPECT_EQ(parents[1], nullptr);
    std::free(parents);
    EXPECT_EQ(xdg_mime_list_mime_parents("image/png"), nullptr);
    EXPECT_STREQ(xdg_mime_get_icon("text/x-old-own"), "own-icon");
    EXPECT_STREQ(xdg_mime_get_generic_icon("text/x-own"), "text-x-generic");
    EXPECT_EQ(xdg_mime_get_icon("image/png"), nullptr);

    EXPECT_TRUE(xdg_mime_is_valid_mime_type("text/plain"));
    for (const char* bad : {"", "text", "/plain", "text/", "text/pl ain", "a/b/c"})
        EXPECT_FALSE(xdg_mime_is_valid_mime_type(bad)) << bad;
    EXPECT_TRUE(xdg_mime_media_type_equal("image/png", "image/jpeg"));
    EXPECT_FALSE(xdg_mime_media_type_equal("image/png", "imagex/png"));
}

using Vyx::detail::MimeDatabase;

std::vector<std::string> typesOf(const Vyx::detail::NameMatch& match)
{
    return std::vector<std::string>(match.types, match.types + match.count);
}

std::string text(const char* type)
{
    return type ? type : "(none)";
}

// The compiled cache and the text files it was made from must give the same
// answers: checked over every pattern and every magic rule of Debian's
// database.
TEST(MimeCache, AgreesWithTheTextFiles)
{
    const std::string dir = "/usr/share/mime";
    MimeDatabase fromCache, fromText;
    ASSERT_TRUE(fromCache.addCache(dir + "/mime.cache"));
    Vyx::detail::MimeTextRules rules;
    rules.readDirectory(dir);
    fromText.addRules(rules);
    EXPECT_EQ(fromCache.maxExtent(), fromText.maxExtent());

    size_t names = 0;
    for (const auto& rule : rules.globs) {
        if (rule.pattern.find_first_of("?[") != std::string::npos)
            continue;
        std::string sample = rule.pattern;
        for (std::string::size_type star; (star = sample.find('*')) != std::string::npos;)
            sample.replace(star, 1, "sample");
        for (const std::string& name : {sample, "Dir/" + sample, std::string("UP") + sample}) {
            EXPECT_EQ(typesOf(fromCache.matchName(name.c_str())), typesOf(fromText.matchName(name.c_str()))) << name;
            ++names;
        }
    }
    EXPECT_GT(names, 1500u);

    size_t contents = 0;
    for (const auto& section : rules.magic) {
        for (const auto& m : section.matchlets) {
            std::string data(m.offset + m.value.size(), '\0');
            data.replace(m.offset, m.value.size(), m.value);
            const unsigned char* bytes = reinterpret_cast<const unsigned char*>(data.data());
            int a = 0, b = 0;
            EXPECT_EQ(text(fromCache.matchMagic(bytes, data.size(), &a)),
                      text(fromText.matchMagic(bytes, data.size(), &b)))
                << section.type;
            EXPECT_EQ(a, b);
            ++contents;
        }
    }
    EXPECT_GT(contents, 300u);
    for (const char* type : {"application/x-pdf", "text/x-csrc", "application/pdf", "image/svg+xml", "no/such"}) {
        EXPECT_EQ(text(fromCache.unalias(type)), text(fromText.unalias(type)));
        const std::vector<const char*> a = fromCache.parents(type), b = fromText.parents(type);
        EXPECT_EQ(std::vector<std::string>(a.begin(), a.end()), std::vector<std::string>(b.begin(), b.end())) << type;
        EXPECT_EQ(text(fromCache.icon(type, true)), text(fromText.icon(type, true))) << type;
        EXPECT_EQ(text(fromCache.icon(type, false)), text(fromText.icon(type, false))) << type;
    }
}

using vyxtest::readBe32;
using vyxtest::writeBe32;

TEST(MimeCache, DamagedCachesGiveWhatCanBeRead)
{
    vyxtest::TempHome world;
    std::string good = vyxtest::readFile("/usr/share/mime/mime.cache");
    ASSERT_GT(good.size(), 1000u);
    std::vector<std::string> damaged = {good.substr(0, good.size() / 2), good.substr(0, 39), std::string(64, '\xff'),
                                        std::string("\0\1\0\2", 4) + std::string(36, '\xff') + good.substr(40)};
    // A suffix tree whose first root links back to the roots, and magic
    // whose first rule is its own child: loops that must end.
    std::string loops = good;
    uint32_t tree = readBe32(good, 16), roots = readBe32(good, tree + 4);
    writeBe32(loops, roots + 8, roots);
    writeBe32(loops, roots + 4, readBe32(good, tree));
    uint32_t magic = readBe32(good, 24), firstMatch = readBe32(good, magic + 8),
             firstMatchlet = readBe32(good, firstMatch + 12);
    writeBe32(loops, firstMatchlet + 24, 1);
    writeBe32(loops, firstMatchlet + 28, firstMatchlet);
    damaged.push_back(loops);
    // Lists that claim more entries than the file holds.
    std::string counts = good;
    for (uint32_t header = 4; header < 40; header += 4)
        writeBe32(counts, readBe32(good, header), 0x7FFFFFFF);
    damaged.push_back(counts);

    // A name of the looping root's character walks the loop as deep as it can.
    const std::string deepName(10000, static_cast<char>(readBe32(good, roots)));
    for (const std::string& bytes : damaged) {
        std::string path = world.writeFile("mime.cache", bytes);
        MimeDatabase db;
        if (!db.addCache(path))
            continue;
        // Must not read outside the mapping, nor loop.
        db.matchName(deepName.c_str());
        db.matchName("x.TXT");
        db.matchMagic(reinterpret_cast<const unsigned char*>("%PDF-"), 5, nullptr);
        db.isSubclass("text/x-csrc", "text/plain");
        db.icon("text/plain", true);
    }
    MimeDatabase loopsOnly;
    ASSERT_TRUE(loopsOnly.addCache(world.writeFile("mime.cache", loops)));
    // The damaged rule is dropped, the others still answer.
    EXPECT_EQ(text(loopsOnly.matchMagic(reinterpret_cast<const unsigned char*>("%PDF-1.4\n"), 9, nullptr)),
              "application/pdf");
}

// The glob matcher must agree with the C library's fnmatch on the patterns
// the database uses, and stay quick where fnmatch backtracks.
using Vyx::detail::globMatch;

TEST(GlobMatch, AgreesWithFnmatchAndManyStarsEndQuickly)
{
    const char* patterns[] = {"*.so.[0-9]*", "README*", "[Mm]akefile", "*.[1-9]",      "x?z", "*~",  "a\\*b",
                              "[!a-c]x",     "[]]x",    "[a-]x",       "*[[:digit:]]", "[",   "a[b", "**.c",
                              "*.tar.*",     "\\",      "[\\]]x",      "*a*b*c",       ""};
    const char* names[] = {"libx.so.1", "libx.so", "README.md", "Makefile",  "makefile", "x.3", "x.z",
                           "xyz",       "xz",      "old~",      "a*b",       "ab",       "dx",  "bx",
                           "]x",        "-x",      "file2",     "[",         "a[b",      "x.c", "a.tar.gz",
                           "\\",        "aXbYc",   "",          ".hidden.c", "dir/x.c"};
    for (const char* pattern : patterns) {
        for (const char* name : names)
            EXPECT_EQ(globMatch(pattern, name), fnmatch(pattern, name, 0) == 0) << pattern << " ~ " << name;
    }
    // A backtracking matcher tries each split of the name for each star.
    std::string name(20000, 'a');
    EXPECT_FALSE(globMatch("*a*a*a*a*a*a*a*a*a*a*b", name.c_str()));
    EXPECT_TRUE(globMatch("*a*a*a*a*a*a*a*a*a*a*", name.c_str()));
}

// Real files of the installed system, by name and content, against the
// answers kept here for each kind of file.
struct Kind {
    const char* dir;
    int depth;
    const char* pattern;  // of the file name
    std::set<std::string> answers;
    // Only files whose first bytes start so (empty: any).
    std::string head;
};

std::string firstBytes(const std::string& path, size_t count)
{
    std::string bytes(count, '\0');
    std::ifstream(path, std::ios::binary).read(&bytes[0], static_cast<std::streamsize>(count));
    return bytes;
}

TEST(MimeCorpus, InstalledFilesGetTheirKnownTypes)
{
    vyxtest::TempHome world;
    vyxtest::ScopedEnv dirs("XDG_DATA_DIRS", "/usr/share");
    const std::set<std::string> elf = {"application/x-executable", "application/x-pie-executable",
                                       "application/x-sharedlib"};
    const Kind kinds[] = {
        {"/usr/share/doc", 2, "copyright", {"text/plain"}, ""},
        {"/usr/share/doc", 2, "*.gz", {"application/gzip"}, ""},
        {"/usr/share/man/man1", 1, "*.1.gz", {"application/gzip"}, ""},
        // Names such as "tclsh8.6" are manual pages by their name, and a
        // name that names one type is not second-guessed.
        {"/usr/bin", 1, "*[a-z]", elf, "\177ELF"},
        {"/usr/bin", 1, "*[a-z]", {"application/x-shellscript"}, "#!/bin/sh\n"},
        {"/usr/lib/x86_64-linux-gnu", 1, "lib*.so.[0-9]*", elf, "\177ELF"},
        {"/usr/share/locale", 3, "*.mo", {"application/x-gettext-translation"}, ""},
        {"/usr/include", 1, "*.h", {"text/x-chdr"}, ""},
        {"/usr/share/icons/Adwaita", 4, "*.png", {"image/png"}, ""},
        {"/usr/share/icons/Adwaita", 4, "*.svg", {"image/svg+xml"}, ""},
        {"/usr/share/mime/packages", 1, "*.xml", {"application/xml"}, ""},
        {"/usr/share/applications", 1, "*.desktop", {"application/x-desktop"}, ""},
    };
    size_t checked = 0;
    for (const Kind& kind : kinds) {
        std::vector<std::string> files;
        GetFileList(&files, kind.dir, kind.depth, "*", Vyx::tagged_bool<FilesOnly_tag>(true));
        size_t taken = 0;
        for (const std::string& file : files) {
            std::string name = file.substr(file.rfind('/') + 1);
            struct stat st;
            if (taken == 40 || fnmatch(kind.pattern, name.c_str(), 0) != 0 || lstat(file.c_str(), &st) != 0 ||
                !S_ISREG(st.st_mode) || st.st_size == 0 || firstBytes(file, kind.head.size()) != kind.head)
                continue;
            const char* type = xdg_mime_get_mime_type_for_file(file.c_str(), nullptr);
            EXPECT_TRUE(kind.answers.count(type)) << file << " is " << type;
            ++taken;
        }
        checked += taken;
    }
    EXPECT_GE(checked, 200u);
    xdg_mime_shutdown();
}

}  // namespace
