// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "mime/globmatch_p.h"

#include <cctype>
#include <cstring>

namespace Vyx::detail {

namespace {

bool inClass(const char* name, size_t length, unsigned char c)
{
    struct Class {
        const char* name;
        int (*test)(int);
    };
    static const Class classes[] = {{"alpha", std::isalpha}, {"digit", std::isdigit},   {"alnum", std::isalnum},
                                    {"upper", std::isupper}, {"lower", std::islower},   {"space", std::isspace},
                                    {"punct", std::ispunct}, {"xdigit", std::isxdigit}, {"blank", std::isblank},
                                    {"cntrl", std::iscntrl}, {"graph", std::isgraph},   {"print", std::isprint}};
    for (const Class& k : classes) {
        if (std::strlen(k.name) == length && std::strncmp(k.name, name, length) == 0)
            return k.test(c) != 0;
    }
    return false;
}

// Matches the bracket expression at p ("[" ...) against c. *length receives
// the pattern bytes it spans; false in *closed when there is no "]", and
// the "[" then stands for itself.
bool bracket(const char* p, unsigned char c, size_t* length, bool* closed)
{
    const char* q = p + 1;
    bool negate = *q == '!' || *q == '^';
    if (negate)
        ++q;
    bool found = false;
    bool first = true;
    while (*q && (*q != ']' || first)) {
        first = false;
        if (q[0] == '[' && q[1] == ':') {
            const char* end = std::strstr(q + 2, ":]");
            if (end) {
                found = found || inClass(q + 2, size_t(end - q - 2), c);
                q = end + 2;
                continue;
            }
        }
        unsigned char low = static_cast<unsigned char>(*q);
        if (low == '\\' && q[1])
            low = static_cast<unsigned char>(*++q);
        ++q;
        unsigned char high = low;
        if (q[0] == '-' && q[1] && q[1] != ']') {
            if (q[1] == '\\' && q[2]) {
                high = static_cast<unsigned char>(q[2]);
                q += 3;
            } else {
                high = static_cast<unsigned char>(q[1]);
                q += 2;
            }
        }
        found = found || (low <= c && c <= high);
    }
    *closed = *q == ']';
    *length = *closed ? size_t(q - p + 1) : 1;
    return found != negate;
}

// Matches the single pattern element at p against c; *length receives the
// pattern bytes it spans. False at the end of the pattern.
bool element(const char* p, unsigned char c, size_t* length)
{
    switch (*p) {
    case '\0':
        return false;
    case '?':
        *length = 1;
        return true;
    case '\\':
        if (p[1]) {
            *length = 2;
            return static_cast<unsigned char>(p[1]) == c;
        }
        return false;  // a pattern that ends in a lone "\\" matches nothing
    case '[': {
        bool closed;
        bool matched = bracket(p, c, length, &closed);
        return closed ? matched : c == '[';
    }
    default:
        *length = 1;
        return static_cast<unsigned char>(*p) == c;
    }
}

}  // namespace

bool globMatch(const char* pattern, const char* name)
{
    // After a star, a failure resumes one byte further along the name from
    // the star: a later star only ever needs the latest one, so no deeper
    // backtracking is needed.
    const char* p = pattern;
    const char* s = name;
    const char* starPattern = nullptr;
    const char* starName = nullptr;
    while (*s) {
        if (*p == '*') {
            while (*p == '*')
                ++p;
            if (!*p)
                return true;
            starPattern = p;
            starName = s;
            continue;
        }
        size_t length = 0;
        if (element(p, static_cast<unsigned char>(*s), &length)) {
            p += length;
            ++s;
            continue;
        }
        if (!starPattern)
            return false;
        p = starPattern;
        s = ++starName;
    }
    while (*p == '*')
        ++p;
    return !*p;
}

}  // namespace Vyx::detail
