// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_INI_P_H
#define VYXCORE_INI_P_H

// The library's one INI document: every desktop entry, theme index,
// mimeapps list and settings file goes through it. It is SimpleIni's
// case-insensitive narrow document with UTF-8 on, multi-key off and
// multi-line off: a repeated key keeps its last value, and key lookups
// ignore case while the listed names keep the file's spelling.

// Narrow UTF-8 text throughout: no character conversion is needed. The
// template's code is compiled once, in ini.cpp.
#ifndef SI_NO_CONVERSION
#define SI_NO_CONVERSION
#endif
#include <SimpleIni.h>

#include <string>
#include <utility>
#include <vector>

namespace Vyx::detail {

class IniDocument {
public:
    IniDocument() : m_ini(true, false, false) {}

    // False when the file cannot be read or parsed, or is not a regular file.
    bool loadFile(const std::string& path);
    // Reads a regular file through a descriptor the caller keeps open. A
    // file locked with fcntl must be read this way: closing any descriptor
    // of it, as loadFile does, would drop the caller's lock.
    bool loadDescriptor(int fd);
    bool loadData(const char* data, size_t size) { return m_ini.LoadData(data, size) >= 0; }

    // The value of key in group, or null.
    const char* value(const char* group, const char* key) const { return m_ini.GetValue(group, key, nullptr); }
    std::string text(const char* group, const char* key) const
    {
        const char* v = value(group, key);
        return v ? std::string(v) : std::string();
    }

    // The keys of group with their values, in file order.
    std::vector<std::pair<const char*, const char*>> entries(const char* group) const;

    // False when the document refuses the key.
    bool set(const char* group, const char* key, const std::string& value)
    {
        return m_ini.SetValue(group, key, value.c_str()) >= 0;
    }

    // Removes group with every key it holds; false when there was none.
    bool removeGroup(const char* group) { return m_ini.Delete(group, nullptr, true); }

    std::string toString() const;
    // Writes the document through writeFileAtomically.
    bool saveAtomically(const std::string& path) const;

private:
    CSimpleIniA m_ini;  // SimpleIni's case-insensitive narrow document
};

}  // namespace Vyx::detail

#endif
