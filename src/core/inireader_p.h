// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of core, open to every folder of the library.

#ifndef VYXCORE_INIREADER_P_H
#define VYXCORE_INIREADER_P_H

// The library's reader of INI-style text: desktop entries, theme indexes,
// mimeapps lists, settings files. It answers exactly as the writer's
// document (ini_p.h) reads the same bytes, so a file written by one reads
// back the same through the other:
//   - lines end at "\n", "\r" or "\r\n"; a NUL byte ends the text, and a
//     leading UTF-8 byte-order mark is skipped; bytes are never validated;
//   - a line whose first non-blank character is ';' or '#' is a comment;
//   - "[name]" opens a group; blanks, and line ends, after '[' are skipped,
//     blanks before ']' trimmed, the rest of the line ignored; a '[' line
//     without ']' before its end is ignored;
//   - "key=value" with blanks trimmed around both; a line without '=' or
//     with an empty key is ignored; keys before any group belong to the
//     group named "";
//   - group and key names compare ignoring ASCII case; a repeated group
//     gathers its keys into the first one, and a repeated key keeps its
//     first place and spelling with the last value.
// One pass over one buffer: names and values stay in the buffer, each
// ended by a NUL written over the byte after it, and the index holds
// offsets, so a load costs a handful of allocations whatever the size.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Vyx::detail {

// Whether the reader takes a and b for the same group or key name: equal
// ignoring ASCII case (other bytes compare as they are).
bool sameIniName(std::string_view a, std::string_view b);

// One key of a group as the reader hands it out.
struct IniField {
    const char* key;
    size_t keyLength;
    const char* value;
    size_t valueLength;
};

class IniReader {
public:
    // False when path is not a regular file that can be read (any content
    // loads); the reader is then empty.
    bool loadFile(const char* path);
    bool loadFile(const std::string& path) { return loadFile(path.c_str()); }
    // Parses a copy of data. No text is refused for its content; only one
    // of 4 GiB or more, which the index cannot address, gives false.
    bool loadData(const char* data, size_t size);
    // Parses text, taking its buffer; false as above.
    bool loadText(std::string&& text);

    // The groups in the order they first appear.
    size_t groupCount() const { return m_groups.size(); }
    const char* groupName(size_t group) const { return at(m_groups[group].name); }
    // The index of the group named name, or -1.
    int group(const char* name) const;
    bool hasGroup(const char* name) const { return group(name) >= 0; }

    // The value of key in the group, or null.
    const char* value(int group, const char* key) const;
    const char* value(const char* group, const char* key) const { return value(this->group(group), key); }
    // The value, or empty.
    std::string text(const char* group, const char* key) const
    {
        const char* v = value(group, key);
        return v ? std::string(v) : std::string();
    }

    // Calls visit(const IniField&) for each key of the group, in file order.
    template <typename Visit> void forEach(int group, Visit&& visit) const
    {
        if (group < 0 || size_t(group) >= m_groups.size())
            return;
        for (uint32_t i = m_groups[size_t(group)].first; i != kNone; i = m_entries[i].next) {
            const Entry& e = m_entries[i];
            visit(IniField {at(e.key), e.keyLength, at(e.value), e.valueLength});
        }
    }
    // The keys of group with their values, in file order.
    std::vector<std::pair<const char*, const char*>> entries(const char* group) const;

private:
    static constexpr uint32_t kNone = UINT32_MAX;
    struct Entry {
        uint32_t key, keyLength, value, valueLength, hash, group, next;
    };
    struct Group {
        uint32_t name, nameLength, hash, first, last;
    };

    void clear();
    void parse();
    uint32_t findOrAddGroup(uint32_t name, uint32_t length);
    void addEntry(uint32_t group, uint32_t key, uint32_t keyLength, uint32_t value, uint32_t valueLength);
    void growEntryTable();
    const char* at(uint32_t offset) const { return m_text.data() + offset; }

    std::string m_text;  // the file, NULs written after every name and value
    std::vector<Entry> m_entries;  // in file order of first appearance
    std::vector<Group> m_groups;  // likewise
    std::vector<uint32_t> m_entryTable;  // open addressing: entry index + 1, 0 free
    std::vector<uint32_t> m_groupTable;  // likewise for groups
};

}  // namespace Vyx::detail

#endif
