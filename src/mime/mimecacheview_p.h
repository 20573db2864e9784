// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_MIMECACHEVIEW_P_H
#define VYXCORE_MIMECACHEVIEW_P_H

// Answers from one directory's rules in the mime.cache layout, read where
// they lie (a mapped file, or the compiled text files) without copying them
// out first: a process that asks one question touches a few pages only.
// Every read is bounded, loops in a damaged file are cut, and the strings
// handed out point into the bytes, valid while they are.

#include "core/mappedfile_p.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Vyx::detail {

// The kinds of name pattern, best first.
enum GlobKind { LiteralGlob = 0, SuffixGlob = 1, OtherGlob = 2, NoGlob = 3 };

// The best name matches offered so far: the best kind, then the highest
// weight, then the longest pattern; equal ones are all kept (the name is
// then ambiguous). Types that a directory of higher precedence turned off
// for later ones are refused.
struct NameMatch {
    static constexpr int kMaxTypes = 16;  // more tying types than this are dropped
    const char* types[kMaxTypes] = {};
    int count = 0;
    int kind = NoGlob;
    int weight = -1;
    size_t length = 0;
    const std::vector<const char*>* refused = nullptr;

    void offer(GlobKind kind, int weight, size_t length, const char* type);
};

// The code point that ends [begin, *end), moving *end back over it. A byte
// that does not belong to a well-formed UTF-8 sequence is a code point of
// its own, so every byte string has one reading.
uint32_t previousCodePoint(const char* begin, const char** end);

class MimeCacheView {
public:
    // False, with nothing readable, when bytes are not a cache of a version
    // this reader knows.
    bool open(ByteView bytes);

    // Offers the patterns of one kind that match name (a file name without
    // directory). With folded, name is already lower-cased and only the
    // patterns that ignore case are tried.
    void matchLiteral(const char* name, bool folded, NameMatch* out) const;
    void matchSuffix(const char* name, size_t length, bool folded, NameMatch* out) const;
    void matchOther(const char* name, bool folded, NameMatch* out) const;
    // The types this directory takes the globs away from in later ones.
    std::vector<const char*> noGlobTypes() const;

    // The type of the best magic rule matching data, or null; *priority
    // receives its priority.
    const char* matchMagic(const unsigned char* data, size_t length, int* priority) const;
    uint32_t maxExtent() const;

    // Null when the list has no entry for type.
    const char* alias(const char* type) const;
    const char* icon(const char* type, bool generic) const;
    void parents(const char* type, std::vector<const char*>* out) const;

private:
    struct Header {
        uint32_t aliases = 0, parents = 0, literals = 0, suffixTree = 0, globs = 0, magic = 0, namespaces = 0,
                 icons = 0, genericIcons = 0;
    };
    // The entry of a sorted list whose first string equals key; 0 when none.
    uint64_t findSorted(uint32_t list, uint32_t entrySize, const char* key) const;
    uint64_t findLinear(uint32_t list, uint32_t entrySize, const char* key) const;
    // The number of entries of a list that lie inside the bytes (0 when the
    // list does not); each entry's first word is a string offset.
    uint32_t entries(uint32_t list, uint32_t entrySize) const;
    // The index of the first entry of a sorted list whose string is not
    // below key.
    uint32_t lowerBound(uint32_t list, uint32_t entrySize, uint32_t count, const char* key) const;
    struct SuffixWalk {
        const char* name;  // the file name
        const char* nameEnd;  // its end
        bool folded;
        NameMatch* out;
    };
    // Follows the tree from the nodes [first, first + count) with the
    // characters before end, last first.
    void walkSuffix(const SuffixWalk& walk, uint32_t count, uint32_t first, const char* end, int depth) const;
    bool matchletMatches(uint64_t matchlet, const unsigned char* data, size_t length) const;
    // Reads once how the magic rules are ordered.
    void checkMagic() const;
    // Finds out whether the rules up to index, in file order, form trees
    // inside the file.
    void checkMatchesUpTo(uint32_t index) const;
    bool checkMatchlets(uint32_t count, uint32_t first, int depth, std::vector<bool>* seen) const;
    bool listSorted(uint32_t list, uint32_t entrySize) const;

    ByteView m_bytes;
    Header m_header;
    mutable bool m_magicChecked = false;
    mutable bool m_magicSorted = false;  // matches by descending priority
    mutable std::vector<bool> m_matchUsable;  // per magic match: inside the file, no loops
    mutable uint32_t m_matchesChecked = 0;  // m_matchUsable is known below this
    mutable std::vector<bool> m_matchSeen;  // matchlets claimed by the rules checked
    mutable int m_parentsSorted = -1;  // -1 not yet known
};

}  // namespace Vyx::detail

#endif
