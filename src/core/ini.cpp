#define SI_IMPLEMENTATION
#include "core/ini_p.h"

#include "core/atomicfile_p.h"
#include "core/readfile_p.h"

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
    std::string data;
    return readRegularFile(path.c_str(), data) && loadData(data.data(), data.size());
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

std::vector<const char*> IniDocument::groups() const
{
    CSimpleIniA::TNamesDepend names;
    m_ini.GetAllSections(names);
    names.sort(CSimpleIniA::Entry::LoadOrder());
    std::vector<const char*> result;
    result.reserve(names.size());
    for (const auto& name : names)
        result.push_back(name.pItem);
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
