// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// ExecFormatString::toString with arbitrary formats and values.
#include <vyxdesktopentry.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // Fields separated by NUL bytes: format, file, url, icon, caption,
    // location, then list items (odd ones files, even ones URLs).
    std::vector<std::string> parts(1);
    for (size_t i = 0; i < size; ++i) {
        if (data[i] == '\0')
            parts.emplace_back();
        else
            parts.back() += static_cast<char>(data[i]);
    }
    parts.resize(std::max<size_t>(parts.size(), 6));
    ExecFormatString e;
    e.format = parts[0].c_str();
    e.file = parts[1].c_str();
    e.url = parts[2].c_str();
    e.icon = parts[3].c_str();
    e.caption = parts[4].c_str();
    e.location = parts[5].c_str();
    for (size_t i = 6; i < parts.size(); ++i)
        (i % 2 ? e.files : e.urls).push_back(parts[i].c_str());
    e.separator = size ? static_cast<char>(data[size - 1] & 1 ? ' ' : 0) : 0;
    // Under the sanitizers: no read past a value, whatever the codes.
    e.toString();
    e.toString();  // the consumed record is still a valid one
    return 0;
}
