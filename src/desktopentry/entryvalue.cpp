// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "desktopentry/entryvalue_p.h"

#include <cstring>

namespace Vyx::detail {

namespace {

// The letter of the escape a backslash followed by c would start, or 0.
char escapedBy(char c)
{
    switch (c) {
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 's':
        return ' ';
    case 't':
        return '\t';
    case '\\':
        return '\\';
    default:
        return 0;
    }
}

}  // namespace

std::string encodeEntryValue(const std::string& value)
{
    std::string out;
    out.reserve(value.size() + 8);
    // Blanks are escaped only at the ends, where the reader trims them.
    size_t first = 0, last = value.size();
    while (first < last && (value[first] == ' ' || value[first] == '\t'))
        ++first;
    while (last > first && (value[last - 1] == ' ' || value[last - 1] == '\t'))
        --last;
    for (size_t i = 0; i < value.size(); ++i) {
        const char c = value[i];
        const bool edge = i < first || i >= last;
        if (c == '\n')
            out += "\\n";
        else if (c == '\r')
            out += "\\r";
        else if (edge && c == ' ')
            out += "\\s";
        else if (edge && c == '\t')
            out += "\\t";
        else if (c == '\\' && (i + 1 == value.size() || escapedBy(value[i + 1]) || value[i + 1] == '\n' ||
                               value[i + 1] == '\r' || value[i + 1] == ' ' || value[i + 1] == '\t'))
            // Also before what is written as an escape, and at the very end.
            out += "\\\\";
        else
            out += c;
    }
    return out;
}

std::string decodeEntryValue(const char* text)
{
    std::string out;
    if (!text)
        return out;
    const size_t size = std::strlen(text);
    out.reserve(size);
    for (size_t i = 0; i < size; ++i) {
        const char decoded = text[i] == '\\' && i + 1 < size ? escapedBy(text[i + 1]) : 0;
        if (decoded) {
            out += decoded;
            ++i;
        } else {
            out += text[i];
        }
    }
    return out;
}

std::string quoteExecArgument(const std::string& arg)
{
    std::string out = "\"";
    for (const char c : arg) {
        if (c == '"' || c == '`' || c == '$' || c == '\\')
            out += '\\';
        else if (c == '%')
            out += '%';
        out += c;
    }
    out += '"';
    return out;
}

EntryValue::EntryValue(const char* text) : m_text(text ? text : "")
{
    if (std::strchr(m_text, '\\')) {
        m_decoded = decodeEntryValue(m_text);
        m_text = m_decoded.c_str();
        m_size = m_decoded.size();
    } else {
        m_size = std::strlen(m_text);
    }
}

}  // namespace Vyx::detail
