#include "core/mappedfile_p.h"
#include "mime/mimedb_p.h"

#include <algorithm>
#include <unordered_set>

namespace Vyx::detail {

namespace {

constexpr uint32_t kHeaderSize = 40;
constexpr int kMaxDepth = 64;           // suffix-tree and magic nesting

// UCS-4 to UTF-8, for the characters of the suffix tree.
void appendUtf8(std::string& out, uint32_t c)
{
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | c >> 6);
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | c >> 12);
        out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18 & 0x07));
        out += static_cast<char>(0x80 | (c >> 12 & 0x3F));
        out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

class CacheReader {
public:
    explicit CacheReader(const MappedFile& file) : m_file(file) {}

    // A list at offset: count, then count entries of entrySize bytes.
    template <typename Visit>
    void eachEntry(uint32_t listOffset, uint32_t entrySize, Visit visit)
    {
        uint32_t count;
        if (!m_file.u32(listOffset, &count))
            return;
        uint64_t first = uint64_t(listOffset) + 4;
        if (!m_file.contains(first, uint64_t(count) * entrySize))
            return;
        for (uint32_t i = 0; i < count; ++i)
            visit(first + uint64_t(i) * entrySize);
    }

    const char* text(uint64_t offsetOfOffset)
    {
        uint32_t offset;
        return m_file.u32(offsetOfOffset, &offset) ? m_file.string(offset) : nullptr;
    }

    void glob(const char* pattern, const char* type, uint32_t weightWord)
    {
        if (!pattern || !type || !*pattern || !*type)
            return;
        GlobRule rule;
        rule.pattern = pattern;
        rule.type = type;
        rule.weight = static_cast<int>(weightWord & 0xFF);
        rule.caseSensitive = weightWord & 0x100;
        m_rules.push_back(std::move(rule));
    }

    void suffixNodes(uint32_t count, uint32_t first, std::string& reversed, int depth)
    {
        if (depth > kMaxDepth || !m_file.contains(first, uint64_t(count) * 12))
            return;
        for (uint32_t i = 0; i < count; ++i) {
            uint64_t node = uint64_t(first) + uint64_t(i) * 12;
            // A tree visits each node once; a damaged cache that links back
            // would otherwise loop, or grow without bound.
            if (!m_seen.insert(node).second)
                continue;
            uint32_t character, a, b;
            if (!m_file.u32(node, &character) || !m_file.u32(node + 4, &a) || !m_file.u32(node + 8, &b))
                return;
            if (character == 0) {
                // A leaf: the suffix read so far, with its type and weight.
                std::string pattern = "*" + std::string(reversed.rbegin(), reversed.rend());
                glob(pattern.c_str(), m_file.string(a), b);
                continue;
            }
            std::string utf8;
            appendUtf8(utf8, character);
            // Characters are collected last first; their bytes stay in order.
            std::string next = reversed + std::string(utf8.rbegin(), utf8.rend());
            suffixNodes(a, b, next, depth + 1);
        }
    }

    bool matchlet(uint64_t offset, Matchlet* out, int depth)
    {
        uint32_t f[8];
        for (int i = 0; i < 8; ++i) {
            if (!m_file.u32(offset + 4 * uint64_t(i), &f[i]))
                return false;
        }
        out->offset = f[0];
        out->rangeLength = std::max<uint32_t>(f[1], 1);
        out->wordSize = f[2];
        if (!m_file.contains(f[4], f[3]) || (f[5] && !m_file.contains(f[5], f[3])))
            return false;
        out->value.assign(reinterpret_cast<const char*>(m_file.data()) + f[4], f[3]);
        if (f[5])
            out->mask.assign(reinterpret_cast<const char*>(m_file.data()) + f[5], f[3]);
        if (depth > kMaxDepth || !m_file.contains(f[7], uint64_t(f[6]) * 32))
            return f[6] == 0;
        for (uint32_t i = 0; i < f[6]; ++i) {
            Matchlet child;
            uint64_t at = uint64_t(f[7]) + uint64_t(i) * 32;
            if (m_seen.insert(at).second && matchlet(at, &child, depth + 1))
                out->children.push_back(std::move(child));
        }
        return true;
    }

    std::vector<GlobRule> m_rules;
    std::vector<MagicSection> m_magic;
    std::unordered_set<uint64_t> m_seen;  // tree nodes and matchlets read so far

private:
    const MappedFile& m_file;
};

}  // namespace

bool MimeDatabase::readCache(const MappedFile& cache)
{
    uint16_t major, minor;
    if (!cache.u16(0, &major) || !cache.u16(2, &minor) || major != 1 || minor < 1 || !cache.contains(0, kHeaderSize))
        return false;
    uint32_t offsets[9];
    for (int i = 0; i < 9; ++i)
        cache.u32(4 + 4 * uint64_t(i), &offsets[i]);
    const uint32_t aliasList = offsets[0], parentList = offsets[1], literalList = offsets[2], suffixTree = offsets[3],
                   globList = offsets[4], magicList = offsets[5], iconList = offsets[7], genericList = offsets[8];
    CacheReader reader(cache);

    reader.eachEntry(aliasList, 8, [&](uint64_t e) {
        const char* alias = reader.text(e);
        const char* canonical = reader.text(e + 4);
        if (alias && canonical)
            m_aliases.emplace(alias, canonical);
    });
    reader.eachEntry(parentList, 8, [&](uint64_t e) {
        const char* type = reader.text(e);
        uint32_t parents;
        if (!type || !cache.u32(e + 4, &parents))
            return;
        std::vector<std::string>& list = m_parents[type];
        reader.eachEntry(parents, 4, [&](uint64_t p) {
            if (const char* parent = reader.text(p))
                if (std::find(list.begin(), list.end(), parent) == list.end())
                    list.push_back(parent);
        });
    });
    for (uint32_t list : {literalList, globList}) {
        reader.eachEntry(list, 12, [&](uint64_t e) {
            uint32_t weight = 50;
            cache.u32(e + 8, &weight);
            reader.glob(reader.text(e), reader.text(e + 4), weight);
        });
    }
    uint32_t roots, firstRoot;
    if (cache.u32(suffixTree, &roots) && cache.u32(uint64_t(suffixTree) + 4, &firstRoot)) {
        std::string reversed;
        reader.suffixNodes(roots, firstRoot, reversed, 0);
    }
    uint32_t matches, extent, firstMatch;
    if (cache.u32(magicList, &matches) && cache.u32(uint64_t(magicList) + 4, &extent) &&
        cache.u32(uint64_t(magicList) + 8, &firstMatch) && cache.contains(firstMatch, uint64_t(matches) * 16)) {
        for (uint32_t i = 0; i < matches; ++i) {
            uint64_t match = uint64_t(firstMatch) + uint64_t(i) * 16;
            uint32_t priority, count, first;
            const char* type = reader.text(match + 4);
            if (!type || !cache.u32(match, &priority) || !cache.u32(match + 8, &count) || !cache.u32(match + 12, &first) ||
                !cache.contains(first, uint64_t(count) * 32))
                continue;
            MagicSection section;
            section.priority = static_cast<int>(std::min<uint32_t>(priority, 100));
            section.type = type;
            for (uint32_t j = 0; j < count; ++j) {
                Matchlet m;
                uint64_t at = uint64_t(first) + uint64_t(j) * 32;
                if (reader.m_seen.insert(at).second && reader.matchlet(at, &m, 0))
                    section.matchlets.push_back(std::move(m));
            }
            reader.m_magic.push_back(std::move(section));
        }
    }
    for (bool generic : {false, true}) {
        auto& map = generic ? m_genericIcons : m_icons;
        reader.eachEntry(generic ? genericList : iconList, 8, [&](uint64_t e) {
            const char* type = reader.text(e);
            const char* icon = reader.text(e + 4);
            if (type && icon)
                map.emplace(type, icon);
        });
    }
    // Globs of types a directory of higher precedence turned off stay off;
    // this directory's own "__NOGLOBS__" turns them off for the next ones.
    std::vector<std::string> noGlobsHere;
    for (GlobRule& rule : reader.m_rules) {
        if (rule.pattern == "__NOGLOBS__")
            noGlobsHere.push_back(rule.type);
        else if (!m_noGlobs.count(rule.type))
            m_globs.push_back(std::move(rule));
    }
    for (const std::string& type : noGlobsHere)
        m_noGlobs[type] = true;
    m_index.built = false;
    for (MagicSection& section : reader.m_magic) {
        for (const Matchlet& m : section.matchlets)
            m_maxExtent = std::max(m_maxExtent, extentOfMatchlet(m));
        m_magic.push_back(std::move(section));
    }
    return true;
}

}  // namespace Vyx::detail
