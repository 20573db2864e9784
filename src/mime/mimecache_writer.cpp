// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "mime/mimecacheview_p.h"
#include "mime/mimetext_p.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <map>
#include <unordered_map>

namespace Vyx::detail {

namespace {

constexpr uint32_t kCaseSensitive = 0x100;

std::string lowered(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

bool isLiteral(const std::string& pattern)
{
    return pattern.find_first_of("*?[") == std::string::npos;
}

// The reverse suffix tree: a path per suffix pattern, last character first.
struct SuffixNode {
    uint32_t character = 0;  // 0: a leaf
    uint32_t type = 0, weight = 0;
    std::map<uint32_t, SuffixNode> children;  // by character
    std::vector<SuffixNode> leaves;
};

class Writer {
public:
    Writer() { m_out.reserve(1 << 16); }

    uint32_t reserve(size_t bytes)
    {
        while (m_out.size() % 4)
            m_out += '\0';
        uint32_t at = uint32_t(m_out.size());
        m_out.append(bytes, '\0');
        return at;
    }
    void set32(uint32_t at, uint32_t value)
    {
        for (int i = 0; i < 4; ++i)
            m_out[at + i] = static_cast<char>(value >> (24 - 8 * i));
    }
    // A NUL-terminated string, written once however often it is used.
    uint32_t text(const std::string& s)
    {
        auto found = m_texts.find(s);
        if (found != m_texts.end())
            return found->second;
        uint32_t at = blob(s + '\0');
        m_texts.emplace(s, at);
        return at;
    }
    uint32_t blob(const std::string& bytes)
    {
        uint32_t at = uint32_t(m_out.size());
        m_out += bytes;
        return at;
    }
    // A list of pairs of strings: count, then (first, second) offsets.
    uint32_t pairList(const std::vector<std::pair<std::string, std::string>>& pairs)
    {
        uint32_t list = reserve(4 + 8 * pairs.size());
        set32(list, uint32_t(pairs.size()));
        for (size_t i = 0; i < pairs.size(); ++i) {
            set32(list + 4 + 8 * uint32_t(i), text(pairs[i].first));
            set32(list + 8 + 8 * uint32_t(i), text(pairs[i].second));
        }
        return list;
    }
    uint32_t suffixNodes(const SuffixNode& parent)
    {
        uint32_t count = uint32_t(parent.leaves.size() + parent.children.size());
        uint32_t first = reserve(12 * size_t(count));
        uint32_t at = first;
        for (const SuffixNode& leaf : parent.leaves) {
            set32(at + 4, leaf.type);
            set32(at + 8, leaf.weight);
            at += 12;
        }
        for (const auto& [character, node] : parent.children) {
            uint32_t children = uint32_t(node.leaves.size() + node.children.size());
            uint32_t firstChild = suffixNodes(node);
            set32(at, character);
            set32(at + 4, children);
            set32(at + 8, firstChild);
            at += 12;
        }
        return first;
    }
    uint32_t matchlets(const std::vector<Matchlet>& list)
    {
        uint32_t first = reserve(32 * list.size());
        for (size_t i = 0; i < list.size(); ++i) {
            const Matchlet& m = list[i];
            uint32_t at = first + 32 * uint32_t(i);
            set32(at, m.offset);
            set32(at + 4, m.rangeLength);
            set32(at + 8, m.wordSize);
            set32(at + 12, uint32_t(m.value.size()));
            set32(at + 16, blob(m.value));
            set32(at + 20, m.mask.empty() ? 0 : blob(m.mask));
            set32(at + 24, uint32_t(m.children.size()));
            set32(at + 28, m.children.empty() ? 0 : matchlets(m.children));
        }
        return first;
    }
    std::string take() { return std::move(m_out); }

private:
    std::string m_out;
    std::unordered_map<std::string, uint32_t> m_texts;
};

// Sorted by the first string; of equal ones the first given stays.
std::vector<std::pair<std::string, std::string>> firstOfEach(std::vector<std::pair<std::string, std::string>> pairs)
{
    std::stable_sort(pairs.begin(), pairs.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    pairs.erase(
        std::unique(pairs.begin(), pairs.end(), [](const auto& a, const auto& b) { return a.first == b.first; }),
        pairs.end());
    return pairs;
}

struct GlobEntry {
    std::string pattern, type;
    uint32_t weight;
};

}  // namespace

std::string compileMimeCache(const MimeTextRules& rules)
{
    Writer w;
    const uint32_t header = w.reserve(40);
    w.set32(header, 1u << 16 | 2u);  // version 1.2

    std::vector<GlobEntry> literals, others;
    SuffixNode root;
    for (const GlobRule& rule : rules.globs) {
        // Patterns that ignore case are kept lower-cased; a name is tried as
        // it is and then lower-cased.
        std::string pattern = rule.caseSensitive ? rule.pattern : lowered(rule.pattern);
        uint32_t weight = uint32_t(std::clamp(rule.weight, 0, 100)) | (rule.caseSensitive ? kCaseSensitive : 0);
        if (isLiteral(pattern)) {
            literals.push_back({pattern, rule.type, weight});
        } else if (pattern.size() > 1 && pattern[0] == '*' && isLiteral(pattern.substr(1))) {
            SuffixNode* node = &root;
            const char* begin = pattern.c_str() + 1;
            for (const char* end = pattern.c_str() + pattern.size(); end != begin;) {
                uint32_t c = previousCodePoint(begin, &end);
                SuffixNode& child = node->children[c];
                child.character = c;
                node = &child;
            }
            SuffixNode leaf;
            leaf.type = w.text(rule.type);
            leaf.weight = weight;
            node->leaves.push_back(leaf);
        } else {
            others.push_back({pattern, rule.type, weight});
        }
    }
    for (const std::string& type : rules.noGlobs)
        literals.push_back({"__NOGLOBS__", type, 0});
    std::stable_sort(literals.begin(), literals.end(),
                     [](const GlobEntry& a, const GlobEntry& b) { return a.pattern < b.pattern; });

    w.set32(header + 4, w.pairList(firstOfEach(rules.aliases)));

    auto parents = rules.parents;
    std::stable_sort(parents.begin(), parents.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    uint32_t parentList = w.reserve(4 + 8 * parents.size());
    w.set32(parentList, uint32_t(parents.size()));
    for (size_t i = 0; i < parents.size(); ++i) {
        uint32_t entry = parentList + 4 + 8 * uint32_t(i);
        w.set32(entry, w.text(parents[i].first));
        uint32_t list = w.reserve(4 + 4 * parents[i].second.size());
        w.set32(list, uint32_t(parents[i].second.size()));
        for (size_t j = 0; j < parents[i].second.size(); ++j)
            w.set32(list + 4 + 4 * uint32_t(j), w.text(parents[i].second[j]));
        w.set32(entry + 4, list);
    }
    w.set32(header + 8, parentList);

    auto globList = [&w](const std::vector<GlobEntry>& entries) {
        uint32_t list = w.reserve(4 + 12 * entries.size());
        w.set32(list, uint32_t(entries.size()));
        for (size_t i = 0; i < entries.size(); ++i) {
            uint32_t entry = list + 4 + 12 * uint32_t(i);
            w.set32(entry, w.text(entries[i].pattern));
            w.set32(entry + 4, w.text(entries[i].type));
            w.set32(entry + 8, entries[i].weight);
        }
        return list;
    };
    w.set32(header + 12, globList(literals));

    uint32_t tree = w.reserve(8);
    w.set32(tree, uint32_t(root.children.size()));
    w.set32(tree + 4, w.suffixNodes(root));
    w.set32(header + 16, tree);
    w.set32(header + 20, globList(others));

    std::vector<const MagicSection*> magic;
    uint64_t extent = 0;
    for (const MagicSection& section : rules.magic) {
        magic.push_back(&section);
        for (const Matchlet& m : section.matchlets)
            extent = std::max(extent, extentOfMatchlet(m));
    }
    std::stable_sort(magic.begin(), magic.end(),
                     [](const MagicSection* a, const MagicSection* b) { return a->priority > b->priority; });
    uint32_t magicList = w.reserve(12);
    uint32_t matches = w.reserve(16 * magic.size());
    w.set32(magicList, uint32_t(magic.size()));
    w.set32(magicList + 4, uint32_t(std::min<uint64_t>(extent, UINT32_MAX)));
    w.set32(magicList + 8, matches);
    for (size_t i = 0; i < magic.size(); ++i) {
        uint32_t match = matches + 16 * uint32_t(i);
        w.set32(match, uint32_t(std::clamp(magic[i]->priority, 0, 100)));
        w.set32(match + 4, w.text(magic[i]->type));
        w.set32(match + 8, uint32_t(magic[i]->matchlets.size()));
        w.set32(match + 12, w.matchlets(magic[i]->matchlets));
    }
    w.set32(header + 24, magicList);
    w.set32(header + 28, w.reserve(4));  // no XML namespace rules
    w.set32(header + 32, w.pairList(firstOfEach(rules.icons)));
    w.set32(header + 36, w.pairList(firstOfEach(rules.genericIcons)));
    return w.take();
}

}  // namespace Vyx::detail
