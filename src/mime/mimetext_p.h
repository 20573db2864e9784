// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_MIMETEXT_P_H
#define VYXCORE_MIMETEXT_P_H

// The text files of one "mime" directory (globs2 or globs, magic, aliases,
// subclasses, icons, generic-icons), read into rules and compiled into the
// same binary layout as the directory's mime.cache, so that one matcher
// answers for both and their answers cannot drift apart.

#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

namespace Vyx::detail {

struct GlobRule {
    std::string pattern;  // as written
    std::string type;
    int weight = 50;
    bool caseSensitive = false;
};

struct Matchlet {
    uint32_t offset = 0;
    uint32_t rangeLength = 1;
    uint32_t wordSize = 1;
    std::string value;
    std::string mask;  // empty: no mask
    std::vector<Matchlet> children;
};

struct MagicSection {
    int priority = 50;
    std::string type;
    std::vector<Matchlet> matchlets;
};

struct MimeTextRules {
    std::vector<GlobRule> globs;
    std::vector<std::string> noGlobs;  // types whose globs in later directories are dropped
    std::vector<MagicSection> magic;
    std::vector<std::pair<std::string, std::string>> aliases;  // alias, canonical
    std::vector<std::pair<std::string, std::vector<std::string>>> parents;
    std::vector<std::pair<std::string, std::string>> icons, genericIcons;

    // Each reader adds what it understands and skips what it does not.
    void readGlobs(FILE* file, bool oldFormat);
    void readAliases(FILE* file);
    void readSubclasses(FILE* file);
    void readIcons(FILE* file, bool generic);
    // False when data is not a magic file; a damaged one keeps the
    // sections before the damage.
    bool readMagic(const std::string& data);
    // Reads every text file of dir that exists.
    void readDirectory(const std::string& dir);
};

// The furthest byte a matchlet (with its children) looks at.
uint64_t extentOfMatchlet(const Matchlet& m);

// The rules laid out as a mime.cache file: case-insensitive patterns
// lower-cased, lists sorted as the readers of such files expect, magic by
// descending priority.
std::string compileMimeCache(const MimeTextRules& rules);

}  // namespace Vyx::detail

#endif
