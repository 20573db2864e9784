// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_STRINGS_H
#define VYXCORE_STRINGS_H

/// \file
/// Byte-oriented string helpers, the variadic string builder Vyx::concat and
/// the typed boolean flag Vyx::tagged_bool. None of these functions keeps
/// state or reports errors; all are re-entrant.
///
/// Threads: safe from any thread, on shared inputs too; only what a call
/// writes into (cutLastSection's text, isEscapedUtf8's decoded buffer) must
/// not be in use by another thread meanwhile.

#include "vyxexport.h"

#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// Flag tags: each makes Vyx::tagged_bool<Tag> a parameter type of its own.
struct AdminOnly_tag { };
struct AllDesktopEntries_tag { };
struct AllDevices_tag { };
struct AllIcons_tag { };
struct ApllyByXrdb_tag { };  ///< spelt so on purpose: the name is part of the interface
struct BlockingCall_tag { };
struct CheckExists_tag { };
struct DeleteAndReuseIfNotBusy_tag { };
struct DeleteIfDisabled_tag { };
struct DirPathOnly_tag { };
struct FileNamesOnly_tag { };
struct FilesOnly_tag { };
struct ForceCheck_tag { };
struct ForceLoad_tag { };
struct IgnoreDotDirectoryFile_tag { };
struct InsideOnly_tag { };
struct KeepDotDirectoryFile_tag { };
struct LockRead_tag { };
struct ProgsOnly_tag { };
struct SaveEmptyFields_tag { };
struct SetInXrdb_tag { };
struct UpdateOnly_tag { };

namespace Vyx {

namespace tagged_bool_ns {

/// A bool that can only be made explicitly, so that a call site spells out
/// every flag and two flags of different meaning cannot be swapped.
template <typename Tag> class tagged_bool {
public:
    /// The flag with the given value; only ever made explicitly.
    constexpr explicit tagged_bool(bool value) : m_value(value) { }
    /// Anything else (ints, pointers, flags of another tag) is refused.
    template <typename Other> tagged_bool(Other) = delete;

    ///@{
    /// The flag's value, and its negation.
    constexpr explicit operator bool() const { return m_value; }
    constexpr bool operator!() const { return !m_value; }
    ///@}

private:
    bool m_value;
};

}  // namespace tagged_bool_ns

/// The name callers write: Vyx::tagged_bool<FilesOnly_tag>(true).
template <typename Tag> using tagged_bool = tagged_bool_ns::tagged_bool<Tag>;

// --- comparison and search -------------------------------------------------

/// Byte equality (strcmp is 0).
VYX_EXPORT bool equal(const char* a, const char* b);
///@{
/// Equality ignoring case, by the C library's locale rules (strcasecmp).
VYX_EXPORT bool ciEqual(const std::string& a, const char* b);
VYX_EXPORT bool ciEqual(const std::string& a, const std::string& b);
///@}
///@{
/// True when needle occurs in hay.
VYX_EXPORT bool contains(const char* hay, const char* needle);
VYX_EXPORT bool contains(const char* hay, const std::string& needle);
VYX_EXPORT bool contains(const std::string& hay, const char* needle);
///@}
///@{
/// True when needle occurs in hay ignoring case (strcasestr).
VYX_EXPORT bool ciContains(const char* hay, const char* needle);
VYX_EXPORT bool ciContains(const std::string& hay, const char* needle);
///@}
///@{
/// True when prefix begins text; the empty prefix always does.
VYX_EXPORT bool startsWith(const char* text, const char* prefix);
VYX_EXPORT bool startsWith(const std::string& text, const char* prefix);
VYX_EXPORT bool startsWith(const std::string& text, const std::string& prefix);
VYX_EXPORT bool startsWith(const char* text, const std::string& prefix);
///@}
///@{
/// True when suffix ends text; a suffix longer than the text never does, the
/// empty suffix always does.
VYX_EXPORT bool endsWith(const char* text, const char* suffix);
VYX_EXPORT bool endsWith(const std::string& text, const char* suffix);
VYX_EXPORT bool endsWith(const std::string& text, const std::string& suffix);
///@}

// --- building and conversion -----------------------------------------------

/// A copy of text; the empty string for a null pointer.
VYX_EXPORT std::string makeString(const char* text);
/// A new NUL-terminated copy allocated with new[]; release it with delete[].
VYX_EXPORT char* newStringCopy(const std::string& text);
/// The fields of text separated by runs of any byte of the delimiter set;
/// empty fields are never produced, so a text of delimiters gives no field.
VYX_EXPORT std::vector<std::string> split(const char* text, const char* delimiters);
/// The parts joined by separator (nothing between them when it is null); the
/// empty string for no parts.
VYX_EXPORT std::string join(const std::vector<std::string>& parts, const char* separator);

/// True when the byte is one of the 22 shell-special characters. Control
/// bytes, DEL and every byte of 128 or more are not special.
VYX_EXPORT bool isSpecial(char c);
/// True when text holds a shell-special byte; false for null or empty.
VYX_EXPORT bool needDoublequotes(const char* text);
///@{
/// One shell argument: unchanged when nothing in it is special, else put in
/// double quotes with ", \ and ` escaped. "$" stays unescaped, so a shell
/// still expands variables inside the result.
VYX_EXPORT std::string quoteArg(const char* arg);
VYX_EXPORT std::string quoteArg(const std::string& arg);
///@}

///@{
/// Percent-encoding: ASCII letters, digits and /$-_.+!*'() are kept, every
/// other byte becomes %XX in upper-case hexadecimal (a blank becomes %20).
VYX_EXPORT std::string encodedUrl(const char* text);
VYX_EXPORT std::string encodedUrl(const std::string& text);
///@}
///@{
/// Percent-decoding without validation: the two bytes after each % are read
/// as hexadecimal (their longest valid prefix, 0 when none) and appended as
/// one byte; "+" stays "+". Never reads past the terminating NUL.
VYX_EXPORT std::string decodedUrl(const char* text);
VYX_EXPORT std::string decodedUrl(const std::string& text);
///@}
/// True when text is UTF-8 by the lead/continuation byte structure (0xFE and
/// 0xFF never; a leading byte-order mark is allowed; overlong forms and the
/// old five- and six-byte forms are accepted). The empty text is valid.
VYX_EXPORT bool isValidUtf8(const unsigned char* text);
/// True when text holds at least one %XX escape and its unescaped form is
/// valid UTF-8. When decoded is not null it receives the unescaped,
/// NUL-terminated text and must hold strlen(text) + 1 bytes; it is left alone
/// for texts shorter than three bytes.
VYX_EXPORT bool isEscapedUtf8(const unsigned char* text, unsigned char* decoded);

// --- paths and sections ----------------------------------------------------

/// The last component of path: the text after its last '/', the whole text
/// when it has none ("dir/a.txt" gives "a.txt", "dir/" the empty string).
VYX_EXPORT std::string fileName(const std::string& path);
/// The file name without any suffix: "dir/a.tar.gz" gives "a", "dir/.profile"
/// gives the empty string.
VYX_EXPORT std::string baseName(const std::string& path);
/// The file name cut before its last dot: "dir/a.tar.gz" gives "a.tar"; the
/// whole file name when it has no dot.
VYX_EXPORT std::string completeBaseName(const std::string& path);
/// Erases the last separator and everything after it; false, and text left
/// alone, when the separator does not occur.
VYX_EXPORT bool cutLastSection(std::string& text, char separator);
/// The text after the last separator; empty when there is no separator.
VYX_EXPORT std::string lastSection(const std::string& text, char separator);
/// Field n of text split at separator, from 0 at the front or from -1 at the
/// back; empty when there is no such field. A separator in the last byte ends
/// the forward walk and one in the first byte ends the backward walk.
VYX_EXPORT std::string section(const std::string& text, char separator, int n);

// --- the string builder ----------------------------------------------------

namespace Impl {

inline void append(std::string&) { }

/// Appends first to out, then the rest: C strings and character arrays as
/// text (a null const char* is skipped), strings as they are, a char as one
/// byte, other arithmetic values in decimal.
template <typename First, typename... Rest> void append(std::string& out, const First& first, const Rest&... rest)
{
    using T = std::decay_t<First>;
    if constexpr (std::is_array_v<First>) {
        out.append(first);
    } else if constexpr (std::is_same_v<T, const char*> || std::is_same_v<T, char*>) {
        if (first)
            out.append(first);
    } else if constexpr (std::is_same_v<T, char>) {
        out.push_back(first);
    } else if constexpr (std::is_arithmetic_v<T>) {
        out.append(std::to_string(first));
    } else {
        out.append(first);
    }
    append(out, rest...);
}

}  // namespace Impl

/// A new string made of the arguments in order (see Impl::append).
template <typename... Args> std::string concat(const Args&... args)
{
    std::string out;
    Impl::append(out, args...);
    return out;
}

}  // namespace Vyx

#endif
