// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of core, open to every folder of the library.

#ifndef VYXCORE_STRINGPOOL_P_H
#define VYXCORE_STRINGPOOL_P_H

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace Vyx::detail {

// A set of strings numbered in the order they were first added, each kept
// once. The bytes live in a few large blocks and the index is one array of
// numbers: a program that fills a pool with thousands of names in its first
// call touches a few pages for them, not a node and a heap block per name.
// Not shared between threads without the owner's lock.
class StringPool {
public:
    // The number of text, added when it is new.
    uint32_t intern(std::string_view text);
    // The number of text, or kNone.
    uint32_t find(std::string_view text) const;
    std::string_view at(uint32_t number) const { return m_strings[number]; }
    uint32_t size() const { return static_cast<uint32_t>(m_strings.size()); }
    // Every number, ordered by its string.
    std::vector<uint32_t> numbersInOrder() const;

    static constexpr uint32_t kNone = UINT32_MAX;

private:
    size_t slotOf(std::string_view text) const;
    void grow();
    std::string_view store(std::string_view text);

    std::vector<std::string_view> m_strings;  // by number, pointing into m_blocks
    std::vector<uint32_t> m_slots;  // open addressing: a number + 1, 0 when free
    std::vector<std::unique_ptr<char[]>> m_blocks;
    size_t m_blockLeft = 0;
    char* m_blockNext = nullptr;
};

}  // namespace Vyx::detail

#endif
