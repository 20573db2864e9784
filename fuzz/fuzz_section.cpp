// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// section, lastSection and cutLastSection on any text, separator and index.
#include <vyxstrings.h>

#include <climits>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 2)
        return 0;
    char separator = static_cast<char>(data[0]);
    int n = static_cast<int8_t>(data[1]);
    // The two extreme bytes stand for the extreme indices, which must not overflow.
    if (n == INT8_MIN)
        n = INT_MIN;
    else if (n == INT8_MAX)
        n = INT_MAX;
    std::string text(reinterpret_cast<const char*>(data + 2), size - 2);
    std::string field = Vyx::section(text, separator, n);
    if (field.size() > text.size() || field.find(separator) != std::string::npos)
        abort();
    if (!field.empty() && text.find(field) == std::string::npos)
        abort();
    std::string last = Vyx::lastSection(text, separator);
    std::string cut = text;
    if (Vyx::cutLastSection(cut, separator) && cut.size() + 1 + last.size() != text.size())
        abort();
    return 0;
}
