// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxsystem.h"

#include "vyxstrings.h"

#include "core/readfile_p.h"
#include "core/textlines_p.h"

#include <cerrno>
#include <climits>
#include <cstdlib>

namespace {

const char kEditionFile[] = "/etc/vyx/edition";

std::string trimmed(const std::string& text)
{
    std::string::size_type first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos)
        return std::string();
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

// The value of key in the edition file; empty when absent.
std::string editionValue(const char* key)
{
    std::string value;
    FILE* in = Vyx::detail::fopenRegularFile(kEditionFile);
    if (!in)
        return value;
    Vyx::detail::forEachLine(in, [&](const std::string& whole) {
        const std::string line = whole.substr(0, whole.find('#'));
        std::string::size_type eq = line.find('=');
        if (eq != std::string::npos && trimmed(line.substr(0, eq)) == key)
            value = trimmed(line.substr(eq + 1));  // the last one wins
    });
    std::fclose(in);
    return value;
}

}  // namespace

bool isOrvelSE()
{
    return Vyx::ciEqual(editionValue("edition"), "SE");
}

int getOrvelMode()
{
    std::string text = editionValue("mode");
    if (text.empty())
        return 0;
    char* end = nullptr;
    errno = 0;
    long mode = std::strtol(text.c_str(), &end, 10);
    if (*end != '\0' || errno == ERANGE || mode < INT_MIN || mode > INT_MAX)
        return 0;
    return static_cast<int>(mode);
}
