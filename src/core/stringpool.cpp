// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "core/stringpool_p.h"

#include <algorithm>
#include <cstring>

namespace Vyx::detail {

namespace {

constexpr size_t kBlockSize = 16384;

// Eight bytes at a time, each word folded in with a rotation and one
// multiplication: paths share long beginnings, and the general-purpose
// string hash spends most of a first lookup's time on them.
uint64_t hashOf(std::string_view text)
{
    constexpr uint64_t kMultiplier = 0x9e3779b97f4a7c15ull;
    uint64_t hash = text.size();
    size_t at = 0;
    for (; at + 8 <= text.size(); at += 8) {
        uint64_t word;
        std::memcpy(&word, text.data() + at, 8);
        hash = ((hash << 5 | hash >> 59) ^ word) * kMultiplier;
    }
    uint64_t rest = 0;
    std::memcpy(&rest, text.data() + at, text.size() - at);
    hash = ((hash << 5 | hash >> 59) ^ rest) * kMultiplier;
    return hash ^ hash >> 32;
}

}  // namespace

size_t StringPool::slotOf(std::string_view text) const
{
    // Linear probing in a table at most half full: a free slot is always
    // found, and a lookup ends at the first one.
    const size_t mask = m_slots.size() - 1;
    size_t slot = hashOf(text) & mask;
    while (m_slots[slot] != 0 && m_strings[m_slots[slot] - 1] != text)
        slot = (slot + 1) & mask;
    return slot;
}

uint32_t StringPool::find(std::string_view text) const
{
    if (m_slots.empty())
        return kNone;
    const uint32_t entry = m_slots[slotOf(text)];
    return entry ? entry - 1 : kNone;
}

void StringPool::grow()
{
    std::vector<uint32_t> slots(m_slots.empty() ? 256 : m_slots.size() * 2, 0);
    m_slots.swap(slots);
    for (uint32_t number = 0; number < m_strings.size(); ++number)
        m_slots[slotOf(m_strings[number])] = number + 1;
}

std::string_view StringPool::store(std::string_view text)
{
    if (text.size() > m_blockLeft) {
        // A string longer than a block gets a block of its own; the rest
        // of the current block stays in use for the next short ones.
        const size_t size = std::max(kBlockSize, text.size());
        // Not zeroed: a page of the block is touched only when a string
        // reaches it.
        m_blocks.emplace_back(new char[size]);
        if (size > kBlockSize) {
            std::memcpy(m_blocks.back().get(), text.data(), text.size());
            return std::string_view(m_blocks.back().get(), text.size());
        }
        m_blockNext = m_blocks.back().get();
        m_blockLeft = size;
    }
    char* at = m_blockNext;
    if (!text.empty())
        std::memcpy(at, text.data(), text.size());
    m_blockNext += text.size();
    m_blockLeft -= text.size();
    return std::string_view(at, text.size());
}

uint32_t StringPool::intern(std::string_view text)
{
    if ((m_strings.size() + 1) * 2 > m_slots.size())
        grow();
    const size_t slot = slotOf(text);
    if (m_slots[slot] != 0)
        return m_slots[slot] - 1;
    m_strings.push_back(store(text));
    m_slots[slot] = static_cast<uint32_t>(m_strings.size());
    return static_cast<uint32_t>(m_strings.size() - 1);
}

std::vector<uint32_t> StringPool::numbersInOrder() const
{
    std::vector<uint32_t> numbers(m_strings.size());
    for (uint32_t number = 0; number < numbers.size(); ++number)
        numbers[number] = number;
    std::sort(numbers.begin(), numbers.end(), [this](uint32_t a, uint32_t b) { return m_strings[a] < m_strings[b]; });
    return numbers;
}

}  // namespace Vyx::detail
