// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of core, open to every folder of the library.

#ifndef VYXCORE_INI_P_H
#define VYXCORE_INI_P_H

// The library's one INI document for writing: every desktop entry, theme
// index and settings file the library saves is built here, so that saves
// keep one format. Reading goes through IniReader (inireader_p.h), which
// answers as this document does for the same bytes and costs a fraction
// of it. It is SimpleIni's case-insensitive narrow document with UTF-8 on,
// multi-key off and multi-line off: a repeated key keeps its last value,
// and key lookups ignore case while the listed names keep the file's
// spelling.

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
    IniDocument() : m_ini(true, false, false) { }

    // False when the file cannot be read or parsed, or is not a regular file.
    bool loadFile(const std::string& path);
    // Reads a regular file through a descriptor the caller keeps open. A
    // file locked with fcntl must be read this way: closing any descriptor
    // of it, as loadFile does, would drop the caller's lock.
    // When text is given it receives the bytes read.
    bool loadDescriptor(int fd, std::string* text = nullptr);
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
    // The groups, in file order.
    std::vector<const char*> groups() const;

    // False when the document refuses the key, and for a group name, key or
    // value that would not read back as given (see the checks below): the
    // document is then unchanged.
    bool set(const char* group, const char* key, const std::string& value)
    {
        if (!isWritableGroup(group) || !isWritableKey(key) || !isWritableValue(value))
            return false;
        return m_ini.SetValue(group, key, value.c_str()) >= 0;
    }

    // Whether text, written as a group name, a key or a value, is read back
    // as exactly that text and nothing more. A line break would start a new
    // line that the reader takes as another key or group; ']' ends a group
    // name early and '[' opens one; '=' ends a key; the reader trims blanks
    // around all three and takes a line starting with '#' or ';' for a
    // comment. A key may hold one bracket pair, as the language suffix of a
    // translation ("Name[de]").
    static bool isWritableGroup(const char* group);
    static bool isWritableKey(const char* key);
    static bool isWritableValue(const std::string& value);

    // Removes group with every key it holds; false when there was none.
    bool removeGroup(const char* group) { return m_ini.Delete(group, nullptr, true); }

    std::string toString() const;
    // Whether saving the document would write every line of text (the file
    // it was loaded from) again: false when the reader dropped a line it
    // could not parse, merged a repeated key or group, or lost a comment.
    bool keepsEveryLine(const std::string& text) const;
    // Writes the document through writeFileAtomically.
    bool saveAtomically(const std::string& path) const;

private:
    CSimpleIniA m_ini;  // SimpleIni's case-insensitive narrow document
};

}  // namespace Vyx::detail

#endif
