// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// MIME detection over real files of the installed system, by name and
// content, against the answers kept here for each kind of file.

#include "support/temp_home.h"

#include <vyxfileutils.h>
#include <vyxmime.h>

#include <gtest/gtest.h>

#include <fnmatch.h>
#include <set>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

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
    FILE* f = std::fopen(path.c_str(), "rb");
    bytes.resize(f ? std::fread(&bytes[0], 1, count, f) : 0);
    if (f)
        std::fclose(f);
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
        {"/usr/bin", 1, "*[a-z]", elf,
         "\x7f"
         "ELF"},
        {"/usr/bin", 1, "*[a-z]", {"application/x-shellscript"}, "#!/bin/sh\n"},
        {"/usr/lib/x86_64-linux-gnu", 1, "lib*.so.[0-9]*", elf,
         "\x7f"
         "ELF"},
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

// Common names and contents of the real database. Two types claim "*.pm"
// with the same weight and the content of a short text file settles
// nothing: the type the database lists first is taken.
TEST(MimeCorpus, RealDatabaseNamesContentsAndTies)
{
    vyxtest::TempHome world;
    vyxtest::ScopedEnv dirs("XDG_DATA_DIRS", "/usr/share");
    EXPECT_STREQ(xdg_mime_get_mime_type_from_file_name("notes.txt"), "text/plain");
    EXPECT_STREQ(xdg_mime_get_mime_type_from_file_name("NOTES.TXT"), "text/plain");
    EXPECT_STREQ(xdg_mime_get_mime_type_from_file_name("a.tar.gz"), "application/x-compressed-tar");
    EXPECT_STREQ(xdg_mime_get_mime_type_from_file_name("Makefile"), "text/x-makefile");
    EXPECT_STREQ(xdg_mime_get_mime_type_from_file_name("x.c"), "text/x-csrc");
    EXPECT_STREQ(xdg_mime_get_mime_type_from_file_name("x.C"), "text/x-c++src");
    int priority = 0;
    EXPECT_STREQ(xdg_mime_get_mime_type_for_data("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16, &priority), "image/png");
    EXPECT_GT(priority, 0);
    EXPECT_STREQ(xdg_mime_get_mime_type_for_data("%PDF-1.4\n", 9, nullptr), "application/pdf");
    EXPECT_STREQ(xdg_mime_unalias_mime_type("application/x-pdf"), "application/pdf");
    EXPECT_TRUE(xdg_mime_mime_type_subclass("application/x-shellscript", "text/plain"));
    EXPECT_GT(xdg_mime_get_max_buffer_extents(), 256);
    const char* types[4];
    ASSERT_EQ(xdg_mime_get_mime_types_from_file_name("u.pm", types, 4), 2);
    EXPECT_STREQ(types[0], "application/x-perl");
    EXPECT_STREQ(types[1], "application/x-pagemaker");
    std::string file = world.writeFile("u.pm", "% comment\nx = 1;\n");
    EXPECT_STREQ(xdg_mime_get_mime_type_for_file(file.c_str(), nullptr), "application/x-perl");
    xdg_mime_shutdown();
}

}  // namespace
