// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "core/inireader_p.h"

#include "core/diag_p.h"
#include "core/readfile_p.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace Vyx::detail {

namespace {

inline bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

inline bool isLineEnd(char c)
{
    return c == '\n' || c == '\r';
}

inline bool isSpace(char c)
{
    return isBlank(c) || isLineEnd(c);
}

constexpr uint64_t kOnes = 0x0101010101010101ULL;

// Eight bytes at once with 'A'-'Z' turned into 'a'-'z' and every other byte
// (bytes of multi-byte characters included) left alone.
inline uint64_t lowerAscii8(uint64_t x)
{
    const uint64_t low7 = x & (0x7f * kOnes);
    const uint64_t atLeastA = low7 + (0x80 - 'A') * kOnes;
    const uint64_t pastZ = low7 + (0x80 - 'Z' - 1) * kOnes;
    const uint64_t upper = atLeastA & ~pastZ & ~x & (0x80 * kOnes);
    return x | (upper >> 2);
}

inline uint64_t load8(const char* s, size_t n)
{
    uint64_t w = 0;
    std::memcpy(&w, s, n < 8 ? n : 8);
    return w;
}

// A hash that ignores ASCII case, eight bytes a step: names are hashed for
// every key of every file, so a byte-wise loop would cost more than the
// parse itself.
uint32_t hashNoCase(const char* s, size_t n)
{
    uint64_t h = 0x9E3779B97F4A7C15ULL ^ n;
    for (; n >= 8; s += 8, n -= 8) {
        h = (h ^ lowerAscii8(load8(s, 8))) * 0xFF51AFD7ED558CCDULL;
        h ^= h >> 32;
    }
    if (n) {
        h = (h ^ lowerAscii8(load8(s, n))) * 0xFF51AFD7ED558CCDULL;
        h ^= h >> 32;
    }
    h *= 0xC4CEB9FE1A85EC53ULL;
    return uint32_t(h >> 32);
}

bool equalNoCase(const char* a, const char* b, size_t n)
{
    for (; n >= 8; a += 8, b += 8, n -= 8) {
        if (lowerAscii8(load8(a, 8)) != lowerAscii8(load8(b, 8)))
            return false;
    }
    return !n || lowerAscii8(load8(a, n)) == lowerAscii8(load8(b, n));
}

inline bool isComment(char c)
{
    return c == ';' || c == '#';
}

inline char* skipLineEnd(char* p, const char* end)
{
    return p + ((*p == '\r' && p + 1 < end && p[1] == '\n') ? 2 : 1);
}

// Passes the block of comment lines starting at p (blank lines inside it
// included) the way the writer's document does, which joins the block's
// lines in place with single "\n"s and ends the joined text with a NUL.
// That NUL can end a group's name (see parse), so the joining is kept byte
// for byte. Returns where parsing goes on; *joinedEnd is the NUL's place.
char* commentBlock(char* p, const char* end, char** joinedEnd)
{
    char* out = p;
    for (;;) {
        if (p == end || !isComment(*p)) {
            char* ahead = p;
            int lineEnds = 0;
            while (ahead < end && isSpace(*ahead)) {
                if (isLineEnd(*ahead)) {
                    ++lineEnds;
                    ahead = skipLineEnd(ahead, end);
                } else {
                    ++ahead;
                }
            }
            if (ahead < end && isComment(*ahead)) {
                for (; lineEnds > 0; --lineEnds)
                    *out++ = '\n';
                p = ahead;
                continue;
            }
            break;
        }
        char* line = p;
        while (p < end && !isLineEnd(*p))
            ++p;
        const size_t length = size_t(p - line);
        if (out < line) {
            std::memmove(out, line, length);
            out[length] = 0;
        }
        if (p == end) {
            *joinedEnd = out + length;
            return p;
        }
        out += length;
        p = skipLineEnd(p, end);
        *out++ = '\n';
    }
    *--out = 0;
    *joinedEnd = out;
    return p;
}

inline uint32_t slotHash(uint32_t hash, uint32_t group)
{
    return hash ^ (group * 0x9E3779B1u);
}

}  // namespace

bool sameIniName(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && equalNoCase(a.data(), b.data(), a.size());
}

void IniReader::clear()
{
    m_text.clear();
    m_entries.clear();
    m_groups.clear();
    m_entryTable.clear();
    m_groupTable.clear();
}

bool IniReader::loadFile(const char* path)
{
    clear();
    std::string text;
    if (!readRegularFile(path, text))
        return false;
    return loadText(std::move(text));
}

bool IniReader::loadData(const char* data, size_t size)
{
    return loadText(std::string(data ? data : "", data ? size : 0));
}

bool IniReader::loadText(std::string&& text)
{
    clear();
    if (text.size() >= UINT32_MAX) {
        Vyx::detail::diag(Vyx::detail::kToolPrefix, "INI text of %zu bytes is too large to read\n", text.size());
        return false;
    }
    m_text = std::move(text);
    parse();
    return true;
}

void IniReader::parse()
{
    char* const begin = m_text.data();
    char* p = begin;
    char* end = begin + m_text.size();
    if (m_text.size() >= 3 && std::memcmp(p, "\xEF\xBB\xBF", 3) == 0)
        p += 3;
    // The text ends at its first NUL byte, as a C string would.
    if (void* nul = std::memchr(p, 0, size_t(end - p)))
        end = static_cast<char*>(nul);
    // Most files end their lines with "\n" alone; those are cut with memchr.
    const bool lineFeedsOnly = !std::memchr(p, '\r', size_t(end - p));
    auto endOfLine = [&](char* from) {
        if (lineFeedsOnly) {
            void* n = std::memchr(from, '\n', size_t(end - from));
            return n ? static_cast<char*>(n) : end;
        }
        while (from < end && !isLineEnd(*from))
            ++from;
        return from;
    };

    // Sized for a key every 16 bytes, denser than usual files (an icon
    // theme's index has one every 22), so that they load without growing: a
    // table copied as it grows costs a fresh process its pages twice, while
    // room reserved and never written costs none. The bound keeps a file of
    // one huge line from reserving for keys it does not have.
    const size_t expected = std::min<size_t>(size_t(end - p) / 16, 4096) + 4;
    m_entries.reserve(expected);
    size_t slots = 64;
    while (slots < expected * 2)
        slots *= 2;
    m_entryTable.assign(slots, 0);
    m_groupTable.assign(16, 0);
    // Keys before any group belong to the group "" (its name is the empty
    // string at the end of the buffer), created with its first key.
    uint32_t group = kNone;
    const uint32_t emptyName = uint32_t(m_text.size());
    // A '[' line without its ']' does not leave the keys after it in the
    // group before: they go to a group named by the text from after the '['
    // up to the first NUL the parse writes after it, which is at the end of
    // the next key or of a comment block before that key. Kept on purpose:
    // files written by the writer's document must read back as it reads
    // them.
    uint32_t pending = kNone, pendingEnd = kNone;

    while (p < end) {
        while (p < end && isSpace(*p))
            ++p;
        if (p == end)
            break;
        if (*p == ';' || *p == '#') {
            if (pending != kNone && pendingEnd == kNone) {
                char* blockEnd = nullptr;
                p = commentBlock(p, end, &blockEnd);
                pendingEnd = uint32_t(blockEnd - begin);
            } else {
                p = endOfLine(p);
            }
            continue;
        }
        if (*p == '[') {
            ++p;
            // Line ends too: "[" alone on a line names the group on the next.
            while (p < end && isSpace(*p))
                ++p;
            char* name = p;
            while (p < end && *p != ']' && !isLineEnd(*p))
                ++p;
            if (p == end || *p != ']') {
                pending = uint32_t(name - begin);
                pendingEnd = kNone;
                continue;
            }
            char* nameEnd = p;
            while (nameEnd > name && isBlank(nameEnd[-1]))
                --nameEnd;
            *nameEnd = 0;
            group = findOrAddGroup(uint32_t(name - begin), uint32_t(nameEnd - name));
            pending = kNone;
            p = endOfLine(p + 1);
            continue;
        }
        char* key = p;
        while (p < end && *p != '=' && !isLineEnd(*p))
            ++p;
        if (p == end || *p != '=')
            continue;
        if (p == key) {
            p = endOfLine(p);
            continue;
        }
        char* keyEnd = p;
        while (keyEnd > key && isBlank(keyEnd[-1]))
            --keyEnd;
        ++p;
        while (p < end && isBlank(*p))
            ++p;
        char* value = p;
        p = endOfLine(p);
        char* valueEnd = p;
        if (p < end)
            p += (*p == '\r' && p + 1 < end && p[1] == '\n') ? 2 : 1;
        while (valueEnd > value && isBlank(valueEnd[-1]))
            --valueEnd;
        // Both NULs land on bytes already passed: the '=' or a blank before
        // it, and a blank or the line end after the value.
        *keyEnd = 0;
        *valueEnd = 0;
        if (pending != kNone) {
            const uint32_t nameEnd = pendingEnd != kNone ? pendingEnd : uint32_t(keyEnd - begin);
            group = findOrAddGroup(pending, nameEnd - pending);
            pending = kNone;
        } else if (group == kNone) {
            group = findOrAddGroup(emptyName, 0);
        }
        addEntry(group, uint32_t(key - begin), uint32_t(keyEnd - key), uint32_t(value - begin),
                 uint32_t(valueEnd - value));
    }
}

uint32_t IniReader::findOrAddGroup(uint32_t name, uint32_t length)
{
    const uint32_t hash = hashNoCase(at(name), length);
    size_t mask = m_groupTable.size() - 1;
    for (size_t slot = hash & mask;; slot = (slot + 1) & mask) {
        const uint32_t index = m_groupTable[slot];
        if (!index)
            break;
        const Group& g = m_groups[index - 1];
        if (g.hash == hash && g.nameLength == length && equalNoCase(at(g.name), at(name), length))
            return index - 1;
    }
    m_groups.push_back(Group {name, length, hash, kNone, kNone});
    if (m_groups.size() * 2 > m_groupTable.size()) {
        m_groupTable.assign(m_groupTable.size() * 2, 0);
        mask = m_groupTable.size() - 1;
        for (uint32_t i = 0; i < m_groups.size(); ++i) {
            size_t slot = m_groups[i].hash & mask;
            while (m_groupTable[slot])
                slot = (slot + 1) & mask;
            m_groupTable[slot] = i + 1;
        }
    } else {
        size_t slot = hash & mask;
        while (m_groupTable[slot])
            slot = (slot + 1) & mask;
        m_groupTable[slot] = uint32_t(m_groups.size());
    }
    return uint32_t(m_groups.size() - 1);
}

void IniReader::growEntryTable()
{
    m_entryTable.assign(m_entryTable.size() * 2, 0);
    const size_t mask = m_entryTable.size() - 1;
    for (uint32_t i = 0; i < m_entries.size(); ++i) {
        size_t slot = slotHash(m_entries[i].hash, m_entries[i].group) & mask;
        while (m_entryTable[slot])
            slot = (slot + 1) & mask;
        m_entryTable[slot] = i + 1;
    }
}

void IniReader::addEntry(uint32_t group, uint32_t key, uint32_t keyLength, uint32_t value, uint32_t valueLength)
{
    const uint32_t hash = hashNoCase(at(key), keyLength);
    const size_t mask = m_entryTable.size() - 1;
    size_t slot = slotHash(hash, group) & mask;
    for (;; slot = (slot + 1) & mask) {
        const uint32_t index = m_entryTable[slot];
        if (!index)
            break;
        Entry& e = m_entries[index - 1];
        if (e.hash == hash && e.group == group && e.keyLength == keyLength &&
            equalNoCase(at(e.key), at(key), keyLength)) {
            // A repeated key keeps its place and spelling; the last value wins.
            e.value = value;
            e.valueLength = valueLength;
            return;
        }
    }
    const uint32_t index = uint32_t(m_entries.size());
    m_entries.push_back(Entry {key, keyLength, value, valueLength, hash, group, kNone});
    Group& g = m_groups[group];
    if (g.last == kNone)
        g.first = index;
    else
        m_entries[g.last].next = index;
    g.last = index;
    m_entryTable[slot] = index + 1;
    if (m_entries.size() * 2 > m_entryTable.size())
        growEntryTable();
}

int IniReader::group(const char* name) const
{
    if (!name || m_groups.empty())
        return -1;
    const size_t length = std::strlen(name);
    const uint32_t hash = hashNoCase(name, length);
    const size_t mask = m_groupTable.size() - 1;
    for (size_t slot = hash & mask;; slot = (slot + 1) & mask) {
        const uint32_t index = m_groupTable[slot];
        if (!index)
            return -1;
        const Group& g = m_groups[index - 1];
        if (g.hash == hash && g.nameLength == length && equalNoCase(at(g.name), name, length))
            return int(index - 1);
    }
}

const char* IniReader::value(int group, const char* key) const
{
    if (group < 0 || size_t(group) >= m_groups.size() || !key)
        return nullptr;
    const size_t length = std::strlen(key);
    const uint32_t hash = hashNoCase(key, length);
    const size_t mask = m_entryTable.size() - 1;
    for (size_t slot = slotHash(hash, uint32_t(group)) & mask;; slot = (slot + 1) & mask) {
        const uint32_t index = m_entryTable[slot];
        if (!index)
            return nullptr;
        const Entry& e = m_entries[index - 1];
        if (e.hash == hash && e.group == uint32_t(group) && e.keyLength == length &&
            equalNoCase(at(e.key), key, length))
            return at(e.value);
    }
}

std::vector<std::pair<const char*, const char*>> IniReader::entries(const char* name) const
{
    std::vector<std::pair<const char*, const char*>> result;
    forEach(group(name), [&](const IniField& field) { result.emplace_back(field.key, field.value); });
    return result;
}

}  // namespace Vyx::detail
