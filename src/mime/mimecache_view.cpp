// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "mime/mimecacheview_p.h"

#include "core/firstanswer_p.h"

#include "mime/globmatch_p.h"

#include <algorithm>
#include <cstring>

namespace Vyx::detail {

namespace {

constexpr uint32_t kHeaderSize = 40;
constexpr uint32_t kCaseSensitive = 0x100;
constexpr int kMaxSuffixDepth = 255;  // characters of one suffix pattern
constexpr int kMaxMagicDepth = 64;  // nesting of magic rules
constexpr uint32_t kMaxExtent = 1 << 20;  // bytes a damaged file may ask us to read

}  // namespace

VYX_FIRST_ANSWER void NameMatch::offer(GlobKind k, int w, size_t len, const char* type)
{
    if (refused) {
        for (const char* gone : *refused) {
            if (std::strcmp(gone, type) == 0)
                return;
        }
    }
    if (k < kind || (k == kind && (w > weight || (w == weight && len > length)))) {
        types[0] = type;
        count = 1;
        kind = k;
        weight = w;
        length = len;
        return;
    }
    if (k != kind || w != weight || len != length)
        return;
    for (int i = 0; i < count; ++i) {
        if (std::strcmp(types[i], type) == 0)
            return;
    }
    if (count < kMaxTypes)
        types[count++] = type;
}

VYX_FIRST_ANSWER uint32_t previousCodePoint(const char* begin, const char** end)
{
    const unsigned char* first = reinterpret_cast<const unsigned char*>(begin);
    const unsigned char* last = reinterpret_cast<const unsigned char*>(*end) - 1;
    if (*last >= 0x80) {
        const unsigned char* lead = last;
        int continuation = 0;
        while (continuation < 3 && lead > first && (*lead & 0xC0) == 0x80) {
            --lead;
            ++continuation;
        }
        int length = *lead >= 0xF0 && *lead < 0xF8   ? 4
                     : *lead >= 0xE0 && *lead < 0xF0 ? 3
                     : *lead >= 0xC0 && *lead < 0xE0 ? 2
                                                     : 0;
        if (continuation > 0 && length == continuation + 1) {
            uint32_t c = *lead & (0x7F >> length);
            for (const unsigned char* p = lead + 1; p <= last; ++p)
                c = c << 6 | (*p & 0x3F);
            *end = reinterpret_cast<const char*>(lead);
            return c;
        }
    }
    *end = reinterpret_cast<const char*>(last);
    return *last;
}

VYX_FIRST_ANSWER bool MimeCacheView::open(ByteView bytes)
{
    uint16_t major, minor;
    if (!bytes.u16(0, &major) || !bytes.u16(2, &minor) || major != 1 || minor < 1 || !bytes.contains(0, kHeaderSize))
        return false;
    m_bytes = bytes;
    uint32_t* fields[] = {&m_header.aliases,    &m_header.parents, &m_header.literals,
                          &m_header.suffixTree, &m_header.globs,   &m_header.magic,
                          &m_header.namespaces, &m_header.icons,   &m_header.genericIcons};
    for (size_t i = 0; i < sizeof fields / sizeof fields[0]; ++i)
        *fields[i] = m_bytes.u32At(4 + 4 * i);
    return true;
}

VYX_FIRST_ANSWER uint32_t MimeCacheView::entries(uint32_t list, uint32_t entrySize) const
{
    uint32_t count;
    if (!m_bytes.u32(list, &count) || !m_bytes.contains(uint64_t(list) + 4, uint64_t(count) * entrySize))
        return 0;
    return count;
}

VYX_FIRST_ANSWER uint32_t MimeCacheView::lowerBound(uint32_t list, uint32_t entrySize, uint32_t count,
                                                    const char* key) const
{
    uint32_t low = 0, high = count;
    while (low < high) {
        uint32_t middle = low + (high - low) / 2;
        if (m_bytes.compare(m_bytes.u32At(uint64_t(list) + 4 + uint64_t(middle) * entrySize), key) < 0)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

VYX_FIRST_ANSWER uint64_t MimeCacheView::findSorted(uint32_t list, uint32_t entrySize, const char* key) const
{
    uint32_t count = entries(list, entrySize);
    uint32_t i = lowerBound(list, entrySize, count, key);
    uint64_t entry = uint64_t(list) + 4 + uint64_t(i) * entrySize;
    return i < count && m_bytes.compare(m_bytes.u32At(entry), key) == 0 ? entry : 0;
}

VYX_FIRST_ANSWER uint64_t MimeCacheView::findLinear(uint32_t list, uint32_t entrySize, const char* key) const
{
    uint32_t count = entries(list, entrySize);
    for (uint32_t i = 0; i < count; ++i) {
        uint64_t entry = uint64_t(list) + 4 + uint64_t(i) * entrySize;
        if (m_bytes.compare(m_bytes.u32At(entry), key) == 0)
            return entry;
    }
    return 0;
}

VYX_FIRST_ANSWER bool MimeCacheView::listSorted(uint32_t list, uint32_t entrySize) const
{
    uint32_t count = entries(list, entrySize);
    for (uint32_t i = 1; i < count; ++i) {
        const char* previous = m_bytes.string(m_bytes.u32At(uint64_t(list) + 4 + uint64_t(i - 1) * entrySize));
        if (!previous || m_bytes.compare(m_bytes.u32At(uint64_t(list) + 4 + uint64_t(i) * entrySize), previous) < 0)
            return false;
    }
    return true;
}

VYX_FIRST_ANSWER void MimeCacheView::matchLiteral(const char* name, bool folded, NameMatch* out) const
{
    // The marker that turns a type's globs off is no file name.
    if (std::strcmp(name, "__NOGLOBS__") == 0)
        return;
    uint32_t count = entries(m_header.literals, 12);
    size_t length = std::strlen(name);
    for (uint32_t i = lowerBound(m_header.literals, 12, count, name); i < count; ++i) {
        uint64_t entry = uint64_t(m_header.literals) + 4 + uint64_t(i) * 12;
        if (m_bytes.compare(m_bytes.u32At(entry), name) != 0)
            break;
        uint32_t weight = m_bytes.u32At(entry + 8);
        const char* type = m_bytes.string(m_bytes.u32At(entry + 4));
        if (type && !(folded && (weight & kCaseSensitive)))
            out->offer(LiteralGlob, int(weight & 0xFF), length, type);
    }
}

VYX_FIRST_ANSWER void MimeCacheView::walkSuffix(const SuffixWalk& walk, uint32_t count, uint32_t first, const char* end,
                                                int depth) const
{
    if (end == walk.name || depth > kMaxSuffixDepth || !m_bytes.contains(first, uint64_t(count) * 12))
        return;
    const char* before = end;
    uint32_t c = previousCodePoint(walk.name, &before);
    // Siblings are sorted by character (leaves, character 0, first).
    uint32_t low = 0, high = count;
    while (low < high) {
        uint32_t middle = low + (high - low) / 2;
        if (m_bytes.u32At(uint64_t(first) + uint64_t(middle) * 12) < c)
            low = middle + 1;
        else
            high = middle;
    }
    uint64_t node = uint64_t(first) + uint64_t(low) * 12;
    if (low == count || m_bytes.u32At(node) != c)
        return;
    uint32_t childCount = m_bytes.u32At(node + 4), firstChild = m_bytes.u32At(node + 8);
    walkSuffix(walk, childCount, firstChild, before, depth + 1);
    if (!m_bytes.contains(firstChild, uint64_t(childCount) * 12))
        return;
    // The leaves among the children are the patterns that end here.
    size_t length = 1 + size_t(walk.nameEnd - before);  // with the "*"
    for (uint32_t i = 0; i < childCount; ++i) {
        uint64_t leaf = uint64_t(firstChild) + uint64_t(i) * 12;
        if (m_bytes.u32At(leaf) != 0)
            break;
        uint32_t weight = m_bytes.u32At(leaf + 8);
        const char* type = m_bytes.string(m_bytes.u32At(leaf + 4));
        if (type && !(walk.folded && (weight & kCaseSensitive)))
            walk.out->offer(SuffixGlob, int(weight & 0xFF), length, type);
    }
}

VYX_FIRST_ANSWER void MimeCacheView::matchSuffix(const char* name, size_t length, bool folded, NameMatch* out) const
{
    uint32_t roots = m_bytes.u32At(m_header.suffixTree), first = m_bytes.u32At(uint64_t(m_header.suffixTree) + 4);
    SuffixWalk walk {name, name + length, folded, out};
    walkSuffix(walk, roots, first, name + length, 0);
}

VYX_FIRST_ANSWER void MimeCacheView::matchOther(const char* name, bool folded, NameMatch* out) const
{
    uint32_t count = entries(m_header.globs, 12);
    for (uint32_t i = 0; i < count; ++i) {
        uint64_t entry = uint64_t(m_header.globs) + 4 + uint64_t(i) * 12;
        uint32_t weight = m_bytes.u32At(entry + 8);
        if (folded && (weight & kCaseSensitive))
            continue;
        const char* pattern = m_bytes.string(m_bytes.u32At(entry));
        const char* type = m_bytes.string(m_bytes.u32At(entry + 4));
        if (pattern && type && globMatch(pattern, name))
            out->offer(OtherGlob, int(weight & 0xFF), std::strlen(pattern), type);
    }
}

std::vector<const char*> MimeCacheView::noGlobTypes() const
{
    std::vector<const char*> types;
    const char marker[] = "__NOGLOBS__";
    uint32_t count = entries(m_header.literals, 12);
    for (uint32_t i = lowerBound(m_header.literals, 12, count, marker); i < count; ++i) {
        uint64_t entry = uint64_t(m_header.literals) + 4 + uint64_t(i) * 12;
        if (m_bytes.compare(m_bytes.u32At(entry), marker) != 0)
            break;
        if (const char* type = m_bytes.string(m_bytes.u32At(entry + 4)))
            types.push_back(type);
    }
    return types;
}

VYX_FIRST_ANSWER uint32_t MimeCacheView::maxExtent() const
{
    return std::min(m_bytes.u32At(uint64_t(m_header.magic) + 4), kMaxExtent);
}

VYX_FIRST_ANSWER bool MimeCacheView::checkMatchlets(uint32_t count, uint32_t first, int depth,
                                                    std::vector<bool>* seen) const
{
    if (count == 0)
        return true;
    if (depth > kMaxMagicDepth || first % 4 != 0 || !m_bytes.contains(first, uint64_t(count) * 32))
        return false;
    for (uint32_t i = 0; i < count; ++i) {
        uint64_t m = uint64_t(first) + uint64_t(i) * 32;
        // Each matchlet belongs to one parent: a file that links back would
        // otherwise loop, or multiply the work without bound.
        if ((*seen)[m / 4])
            return false;
        (*seen)[m / 4] = true;
        uint32_t length = m_bytes.u32At(m + 12), value = m_bytes.u32At(m + 16), mask = m_bytes.u32At(m + 20);
        if (!m_bytes.contains(value, length) || (mask && !m_bytes.contains(mask, length)))
            return false;
        if (!checkMatchlets(m_bytes.u32At(m + 24), m_bytes.u32At(m + 28), depth + 1, seen))
            return false;
    }
    return true;
}

VYX_FIRST_ANSWER void MimeCacheView::checkMagic() const
{
    // Only the order of the priorities is read for every rule here: a rule's
    // matchlets are checked when a search first reaches it, which for most
    // data is one of the first rules.
    m_magicChecked = true;
    uint32_t count = m_bytes.u32At(m_header.magic), first = m_bytes.u32At(uint64_t(m_header.magic) + 8);
    if (!m_bytes.contains(first, uint64_t(count) * 16))
        return;
    m_matchUsable.assign(count, false);
    m_magicSorted = true;
    uint32_t previous = UINT32_MAX;
    for (uint32_t i = 0; i < count; ++i) {
        uint32_t priority = m_bytes.u32At(uint64_t(first) + uint64_t(i) * 16);
        if (priority > previous)
            m_magicSorted = false;
        previous = priority;
    }
}

VYX_FIRST_ANSWER void MimeCacheView::checkMatchesUpTo(uint32_t index) const
{
    // Checked in file order, as far as asked: a matchlet claimed by an
    // earlier rule is refused to a later one whichever rule is asked first.
    if (m_matchSeen.empty())
        m_matchSeen.assign(m_bytes.size() / 4 + 1, false);
    const uint64_t first = m_bytes.u32At(uint64_t(m_header.magic) + 8);
    for (; m_matchesChecked <= index; ++m_matchesChecked) {
        uint64_t match = first + uint64_t(m_matchesChecked) * 16;
        m_matchUsable[m_matchesChecked] =
            m_bytes.string(m_bytes.u32At(match + 4)) &&
            checkMatchlets(m_bytes.u32At(match + 8), m_bytes.u32At(match + 12), 0, &m_matchSeen);
    }
}

VYX_FIRST_ANSWER bool MimeCacheView::matchletMatches(uint64_t m, const unsigned char* data, size_t length) const
{
    // Checked by checkMatchesUpTo(): the matchlet, its value and mask and its
    // children lie inside the bytes.
    const uint32_t start = m_bytes.u32At(m), range = std::max<uint32_t>(m_bytes.u32At(m + 4), 1),
                   wordSize = m_bytes.u32At(m + 8), size = m_bytes.u32At(m + 12);
    const unsigned char* value = m_bytes.data() + m_bytes.u32At(m + 16);
    const uint32_t maskOffset = m_bytes.u32At(m + 20);
    const unsigned char* mask = maskOffset ? m_bytes.data() + maskOffset : nullptr;
    if (size > length)
        return false;
    const uint64_t last = std::min<uint64_t>(uint64_t(start) + range - 1, length - size);
    // Integers of 2 or 4 bytes are stored big-endian and compared in host
    // order on little-endian hosts.
    const bool swap = (wordSize == 2 || wordSize == 4) && size % wordSize == 0;
    const size_t firstIndex = swap ? wordSize - 1 : 0;  // the value byte data[pos] meets
    const bool skipAhead = size > 0 && range > 1 && (!mask || mask[firstIndex] == 0xFF);
    for (uint64_t pos = start; pos <= last; ++pos) {
        if (skipAhead) {
            const void* hit = std::memchr(data + pos, value[firstIndex], size_t(last - pos + 1));
            if (!hit)
                return false;
            pos = uint64_t(static_cast<const unsigned char*>(hit) - data);
        }
        bool equal;
        if (!mask && !swap) {
            equal = std::memcmp(data + pos, value, size) == 0;
        } else {
            equal = true;
            for (size_t i = 0; i < size && equal; ++i) {
                size_t j = swap ? i - i % wordSize + (wordSize - 1 - i % wordSize) : i;
                unsigned char byte = data[pos + i], expected = value[j];
                if (mask) {
                    byte &= mask[j];
                    expected &= mask[j];
                }
                equal = byte == expected;
            }
        }
        if (!equal)
            continue;
        // The first place that matches decides: its children must match too.
        uint32_t children = m_bytes.u32At(m + 24), firstChild = m_bytes.u32At(m + 28);
        if (children == 0)
            return true;
        for (uint32_t i = 0; i < children; ++i) {
            if (matchletMatches(uint64_t(firstChild) + uint64_t(i) * 32, data, length))
                return true;
        }
        return false;
    }
    return false;
}

VYX_FIRST_ANSWER const char* MimeCacheView::matchMagic(const unsigned char* data, size_t length, int* priority) const
{
    if (!m_magicChecked)
        checkMagic();
    const uint64_t first = m_bytes.u32At(uint64_t(m_header.magic) + 8);
    const char* best = nullptr;
    int bestPriority = -1;
    for (uint32_t i = 0; i < m_matchUsable.size(); ++i) {
        uint64_t match = first + uint64_t(i) * 16;
        int rulePriority = int(std::min<uint32_t>(m_bytes.u32At(match), 100));
        if (rulePriority <= bestPriority)
            continue;
        if (i >= m_matchesChecked)
            checkMatchesUpTo(i);
        if (!m_matchUsable[i])
            continue;
        uint32_t count = m_bytes.u32At(match + 8), firstMatchlet = m_bytes.u32At(match + 12);
        for (uint32_t j = 0; j < count; ++j) {
            if (matchletMatches(uint64_t(firstMatchlet) + uint64_t(j) * 32, data, length)) {
                best = m_bytes.string(m_bytes.u32At(match + 4));
                bestPriority = rulePriority;
                break;
            }
        }
        // In descending order the first match is the best one.
        if (best && m_magicSorted)
            break;
    }
    if (priority)
        *priority = best ? bestPriority : 0;
    return best;
}

VYX_FIRST_ANSWER const char* MimeCacheView::alias(const char* type) const
{
    uint64_t entry = findSorted(m_header.aliases, 8, type);
    return entry ? m_bytes.string(m_bytes.u32At(entry + 4)) : nullptr;
}

const char* MimeCacheView::icon(const char* type, bool generic) const
{
    uint64_t entry = findSorted(generic ? m_header.genericIcons : m_header.icons, 8, type);
    return entry ? m_bytes.string(m_bytes.u32At(entry + 4)) : nullptr;
}

VYX_FIRST_ANSWER void MimeCacheView::parents(const char* type, std::vector<const char*>* out) const
{
    // Writers sort this list too, but the format does not promise it.
    if (m_parentsSorted < 0)
        m_parentsSorted = listSorted(m_header.parents, 8);
    uint64_t entry = m_parentsSorted ? findSorted(m_header.parents, 8, type) : findLinear(m_header.parents, 8, type);
    if (!entry)
        return;
    uint32_t list = m_bytes.u32At(entry + 4);
    uint32_t count = entries(list, 4);
    for (uint32_t i = 0; i < count; ++i) {
        const char* parent = m_bytes.string(m_bytes.u32At(uint64_t(list) + 4 + uint64_t(i) * 4));
        if (parent && std::find_if(out->begin(), out->end(),
                                   [&](const char* p) { return std::strcmp(p, parent) == 0; }) == out->end())
            out->push_back(parent);
    }
}

}  // namespace Vyx::detail
