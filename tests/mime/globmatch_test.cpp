// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The glob matcher of the MIME database against the C library's fnmatch,
// which it must agree with on the patterns the database uses, and its
// bounded time where fnmatch backtracks.

#include "mime/globmatch_p.h"

#include <gtest/gtest.h>

#include <fnmatch.h>
#include <string>

namespace {

using Vyx::detail::globMatch;

TEST(GlobMatch, AgreesWithFnmatch)
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
}

TEST(GlobMatch, ManyStarsOnALongNameEndQuickly)
{
    // A backtracking matcher tries each split of the name for each star.
    std::string name(20000, 'a');
    EXPECT_FALSE(globMatch("*a*a*a*a*a*a*a*a*a*a*b", name.c_str()));
    EXPECT_TRUE(globMatch("*a*a*a*a*a*a*a*a*a*a*", name.c_str()));
}

}  // namespace
