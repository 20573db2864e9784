// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of desktopentry, open to shell, whose position and
// recent-item files carry desktop-entry values.

#ifndef VYXCORE_ENTRYVALUE_P_H
#define VYXCORE_ENTRYVALUE_P_H

// The escapes of desktop-entry values: a value is one line, so a line break
// in it is written as "\n" or "\r", and a blank at either end (which the
// reader would trim) as "\s" or "\t". A backslash is doubled only where it
// would otherwise start one of these escapes, so that values without them
// (most Exec lines) are written exactly as before.

#include <string>

namespace Vyx::detail {

// The text to write for value; it holds no line break and no blank at
// either end, and decodeEntryValue gives value back.
std::string encodeEntryValue(const std::string& value);

// The value a line of a file stands for: "\n", "\r", "\s", "\t" and "\\"
// become the characters; any other backslash stays as it is.
std::string decodeEntryValue(const char* text);

// The value text stands for, without a copy when it holds no backslash
// (nearly every value), so that loading an entry allocates nothing for it.
class EntryValue {
public:
    explicit EntryValue(const char* text);
    EntryValue(const EntryValue&) = delete;
    EntryValue& operator=(const EntryValue&) = delete;
    const char* c_str() const { return m_text; }
    size_t size() const { return m_size; }

private:
    std::string m_decoded;
    const char* m_text;
    size_t m_size;
};

// arg as one argument of an Exec value: always in double quotes, with '"',
// '`', '$' and '\\' escaped by a backslash and '%' doubled so that no field
// code is read into it. Line breaks stay; encodeEntryValue escapes them when
// the value is written.
std::string quoteExecArgument(const std::string& arg);

}  // namespace Vyx::detail

#endif
