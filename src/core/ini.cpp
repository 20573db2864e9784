// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#define SI_IMPLEMENTATION
#include "core/ini_p.h"

#include "core/atomicfile_p.h"
#include "core/readfile_p.h"

#include <algorithm>

// The one instantiation of the document type, for every user of ini_p.h.
template class CSimpleIniTempl<char, SI_NoCase<char>, SI_ConvertA<char>>;

namespace Vyx::detail {

bool IniDocument::loadFile(const std::string& path)
{
    std::string data;
    return readRegularFile(path.c_str(), data) && loadData(data.data(), data.size());
}

bool IniDocument::loadDescriptor(int fd, std::string* text)
{
    std::string data;
    if (!readRegularDescriptor(fd, data))
        return false;
    const bool ok = loadData(data.data(), data.size());
    if (text)
        *text = std::move(data);
    return ok;
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
    std::sort(ordered.begin(), ordered.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    result.reserve(ordered.size());
    for (const auto& entry : ordered)
        result.push_back(entry.second);
    return result;
}

namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

bool hasLineBreak(const std::string& text)
{
    return text.find_first_of("\r\n") != std::string::npos;
}

// Not empty, no line break, no blank at either end.
bool isOneTrimmedLine(const std::string& text)
{
    return !text.empty() && !hasLineBreak(text) && !isBlank(text.front()) && !isBlank(text.back());
}

}  // namespace

bool IniDocument::isWritableGroup(const char* group)
{
    if (!group)
        return false;
    const std::string name = group;
    return isOneTrimmedLine(name) && name.find_first_of("[]") == std::string::npos;
}

bool IniDocument::isWritableKey(const char* key)
{
    if (!key)
        return false;
    const std::string name = key;
    if (!isOneTrimmedLine(name) || name.find('=') != std::string::npos || name[0] == '#' || name[0] == ';')
        return false;
    const std::string::size_type open = name.find('[');
    if (open == std::string::npos)
        return name.find(']') == std::string::npos;
    // Only "base[suffix]": one pair, closing the key, with something on both sides.
    return open > 0 && name.back() == ']' && name.find(']') == name.size() - 1 &&
           name.find('[', open + 1) == std::string::npos && open + 2 < name.size() && !isBlank(name[open - 1]);
}

bool IniDocument::isWritableValue(const std::string& value)
{
    return value.empty() || (!hasLineBreak(value) && !isBlank(value.front()) && !isBlank(value.back()));
}

namespace {

std::string trimmed(const std::string& text)
{
    const std::string::size_type first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos)
        return std::string();
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

// Each meaningful line of text in a form that ignores the writer's layout
// (blanks around '=' and at the ends), tagged with the group it stands in,
// sorted so that two texts compare as multisets.
std::vector<std::string> meaningfulLines(const std::string& text)
{
    std::vector<std::string> lines;
    std::string group;
    std::string::size_type start = 0;
    while (start < text.size()) {
        std::string::size_type end = text.find('\n', start);
        if (end == std::string::npos)
            end = text.size();
        std::string line = trimmed(text.substr(start, end - start));
        start = end + 1;
        if (line.empty())
            continue;
        if (line[0] == '[') {
            group = line;
            lines.push_back(line);
            continue;
        }
        const std::string::size_type equals = line[0] == '#' || line[0] == ';' ? std::string::npos : line.find('=');
        if (equals != std::string::npos)
            line = trimmed(line.substr(0, equals)) + '=' + trimmed(line.substr(equals + 1));
        lines.push_back(group + '\n' + line);
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

}  // namespace

bool IniDocument::keepsEveryLine(const std::string& text) const
{
    // A NUL ends the text for the reader: what follows it is lost.
    if (std::memchr(text.data(), 0, text.size()))
        return false;
    const std::vector<std::string> before = meaningfulLines(text), after = meaningfulLines(toString());
    return std::includes(after.begin(), after.end(), before.begin(), before.end());
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
