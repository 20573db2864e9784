// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#define SI_IMPLEMENTATION
#include "core/ini_p.h"

#include "core/atomicfile_p.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

// The one instantiation of the document type, for every user of ini_p.h.
template class CSimpleIniTempl<char, SI_NoCase<char>, SI_ConvertA<char>>;

namespace Vyx::detail {

bool IniDocument::loadFile(const std::string& path)
{
    FILE* file = std::fopen(path.c_str(), "rb");
    if (!file)
        return false;
    // Only regular files: the reader sizes its buffer by seeking to the end,
    // which for a directory or a device gives a nonsensical length.
    struct stat st;
    bool ok = fstat(fileno(file), &st) == 0 && S_ISREG(st.st_mode) && m_ini.LoadFile(file) >= 0;
    std::fclose(file);
    return ok;
}

bool IniDocument::loadDescriptor(int fd)
{
    struct stat st;
    if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode))
        return false;
    std::string data;
    char buffer[16384];
    for (off_t offset = 0;;) {
        const ssize_t n = pread(fd, buffer, sizeof buffer, offset);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return false;
        if (n == 0)
            break;
        data.append(buffer, size_t(n));
        offset += n;
    }
    return loadData(data.data(), data.size());
}

std::vector<std::pair<const char*, const char*>> IniDocument::entries(const char* group) const
{
    std::vector<std::pair<const char*, const char*>> result;
    const CSimpleIniA::TKeyVal* section = m_ini.GetSection(group);
    if (!section)
        return result;
    std::vector<std::pair<int, std::pair<const char*, const char*>>> ordered;
    ordered.reserve(section->size());
    for (const auto& entry : *section)
        ordered.push_back({entry.first.nOrder, {entry.first.pItem, entry.second}});
    std::sort(ordered.begin(), ordered.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    result.reserve(ordered.size());
    for (const auto& entry : ordered)
        result.push_back(entry.second);
    return result;
}

std::string IniDocument::toString() const
{
    std::string text;
    m_ini.Save(text, false);
    return text;
}

bool IniDocument::saveAtomically(const std::string& path) const
{
    std::string text;
    if (m_ini.Save(text, false) < 0)
        return false;
    return writeFileAtomically(path, text);
}

}  // namespace Vyx::detail
