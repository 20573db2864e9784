// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxstrings.h"

#include <cstring>
#include <strings.h>

namespace Vyx {

bool equal(const char* a, const char* b)
{
    return std::strcmp(a, b) == 0;
}

bool ciEqual(const std::string& a, const char* b)
{
    return strcasecmp(a.c_str(), b) == 0;
}

bool ciEqual(const std::string& a, const std::string& b)
{
    return strcasecmp(a.c_str(), b.c_str()) == 0;
}

bool contains(const char* hay, const char* needle)
{
    return std::strstr(hay, needle) != nullptr;
}

bool contains(const char* hay, const std::string& needle)
{
    return contains(hay, needle.c_str());
}

bool contains(const std::string& hay, const char* needle)
{
    return contains(hay.c_str(), needle);
}

bool ciContains(const char* hay, const char* needle)
{
    return strcasestr(hay, needle) != nullptr;
}

bool ciContains(const std::string& hay, const char* needle)
{
    return ciContains(hay.c_str(), needle);
}

bool startsWith(const char* text, const char* prefix)
{
    return std::strncmp(text, prefix, std::strlen(prefix)) == 0;
}

bool startsWith(const std::string& text, const char* prefix)
{
    return text.compare(0, std::strlen(prefix), prefix) == 0;
}

bool startsWith(const std::string& text, const std::string& prefix)
{
    return text.compare(0, prefix.size(), prefix) == 0;
}

bool startsWith(const char* text, const std::string& prefix)
{
    return startsWith(text, prefix.c_str());
}

namespace {

bool endsWith(const char* text, size_t textLength, const char* suffix, size_t suffixLength)
{
    return suffixLength <= textLength && std::memcmp(text + textLength - suffixLength, suffix, suffixLength) == 0;
}

}  // namespace

bool endsWith(const char* text, const char* suffix)
{
    return endsWith(text, std::strlen(text), suffix, std::strlen(suffix));
}

bool endsWith(const std::string& text, const char* suffix)
{
    return endsWith(text.data(), text.size(), suffix, std::strlen(suffix));
}

bool endsWith(const std::string& text, const std::string& suffix)
{
    return endsWith(text.data(), text.size(), suffix.data(), suffix.size());
}

std::string makeString(const char* text)
{
    return text ? std::string(text) : std::string();
}

char* newStringCopy(const std::string& text)
{
    char* copy = new char[text.size() + 1];
    std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
    return copy;
}

std::vector<std::string> split(const char* text, const char* delimiters)
{
    std::vector<std::string> fields;
    // strtok_r writes into its input, so it works on a private copy.
    std::string scratch(text);
    char* state = nullptr;
    for (char* token = strtok_r(scratch.data(), delimiters, &state); token;
         token = strtok_r(nullptr, delimiters, &state))
        fields.emplace_back(token);
    return fields;
}

std::string join(const std::vector<std::string>& parts, const char* separator)
{
    if (parts.empty())
        return std::string();
    size_t separatorLength = separator ? std::strlen(separator) : 0;
    size_t total = separatorLength * (parts.size() - 1);
    for (const std::string& part : parts)
        total += part.size();

    std::string result;
    result.reserve(total);
    result += parts.front();
    for (size_t i = 1; i < parts.size(); ++i) {
        result.append(separator ? separator : "", separatorLength);
        result += parts[i];
    }
    return result;
}

bool isSpecial(char c)
{
    // Taken as a signed char, every byte of 128 or more is below 32 too, so
    // multi-byte UTF-8 text never needs quoting on its own account.
    if (static_cast<signed char>(c) < 32 || c == 127)
        return false;
    static const char kSpecial[] = " \\'\"$`<>|;&(){}*?#!~[]";
    return std::memchr(kSpecial, c, sizeof kSpecial - 1) != nullptr;
}

bool needDoublequotes(const char* text)
{
    if (!text)
        return false;
    for (; *text; ++text) {
        if (isSpecial(*text))
            return true;
    }
    return false;
}

std::string quoteArg(const char* arg)
{
    if (!needDoublequotes(arg))
        return makeString(arg);
    std::string quoted = "\"";
    for (const char* p = arg; *p; ++p) {
        // "$" is left alone on purpose: callers rely on the shell expanding
        // variables inside the quotes.
        if (*p == '"' || *p == '\\' || *p == '`')
            quoted += '\\';
        quoted += *p;
    }
    quoted += '"';
    return quoted;
}

std::string quoteArg(const std::string& arg)
{
    return quoteArg(arg.c_str());
}

namespace { }  // namespace

std::string fileName(const std::string& path)
{
    std::string::size_type slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string baseName(const std::string& path)
{
    std::string name = fileName(path);
    return name.substr(0, name.find('.'));
}

std::string completeBaseName(const std::string& path)
{
    std::string name = fileName(path);
    return name.substr(0, name.rfind('.'));
}

bool cutLastSection(std::string& text, char separator)
{
    std::string::size_type pos = text.rfind(separator);
    if (pos == std::string::npos)
        return false;
    text.erase(pos);
    return true;
}

std::string lastSection(const std::string& text, char separator)
{
    std::string::size_type pos = text.rfind(separator);
    return pos == std::string::npos ? std::string() : text.substr(pos + 1);
}

std::string section(const std::string& text, char separator, int n)
{
    const std::string::size_type npos = std::string::npos;
    if (text.empty())
        return std::string();

    if (n >= 0) {
        std::string::size_type start = 0;
        std::string::size_type end = text.find(separator);
        for (int i = 0; i < n; ++i) {
            // A separator in the last byte ends the walk: the field after it
            // is not counted (kept as it always behaved).
            if (end == npos || end >= text.size() - 1)
                return std::string();
            start = end + 1;
            end = text.find(separator, start);
        }
        if (end == npos)
            end = text.size();
        return start == end ? std::string() : text.substr(start, end - start);
    }

    std::string::size_type last = text.size() - 1;
    std::string::size_type pos = text.rfind(separator, last);
    const int steps = -(n + 1);  // not -n - 1: that overflows for INT_MIN
    for (int i = 0; i < steps; ++i) {
        // Likewise a separator in the first byte ends the backward walk.
        if (pos == npos || pos == 0)
            return std::string();
        last = pos - 1;
        pos = text.rfind(separator, last);
    }
    if (pos == last)
        return std::string();
    std::string::size_type first = pos == npos ? 0 : pos + 1;
    return text.substr(first, last - first + 1);
}

}  // namespace Vyx
