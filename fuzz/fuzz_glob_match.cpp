// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The MIME glob matcher on arbitrary patterns and names: it must end
// quickly whatever the stars, and agree with the C library's fnmatch where
// fnmatch itself is quick and well defined.
#include "mime/globmatch_p.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fnmatch.h>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::string input(reinterpret_cast<const char*>(data), size);
    std::string::size_type split = input.find('\0');
    if (split == std::string::npos)
        return 0;
    std::string pattern = input.substr(0, split);
    std::string name = input.substr(split + 1);
    name = name.substr(0, name.find('\0'));
    bool ours = Vyx::detail::globMatch(pattern.c_str(), name.c_str());
    size_t stars = 0;
    for (char c : pattern)
        stars += c == '*';
    // Equivalence classes, collating symbols, class names and brackets left
    // open are read differently by C libraries; fnmatch backtracks on many
    // stars.
    bool closed = true;
    for (std::string::size_type open = pattern.find('['); open != std::string::npos; open = pattern.find('[', open + 1))
        closed = closed && pattern.find(']', open + 2) != std::string::npos;
    bool comparable = closed && stars <= 3 && name.size() <= 64 && pattern.find("[=") == std::string::npos &&
                      pattern.find("[.") == std::string::npos && pattern.find("[:") == std::string::npos;
    if (comparable && ours != (fnmatch(pattern.c_str(), name.c_str(), 0) == 0))
        std::abort();
    return 0;
}
