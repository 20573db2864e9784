// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxstrings.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace Vyx {

namespace {

bool keptInUrl(unsigned char c)
{
    // ASCII only, whatever the locale: every byte of 128 or more is escaped.
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'))
        return true;
    return c != '\0' && std::strchr("/$-_.+!*'()", c) != nullptr;
}

bool isHexDigit(unsigned char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

unsigned char hexValue(unsigned char c)
{
    return static_cast<unsigned char>(c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10);
}

}  // namespace

std::string encodedUrl(const char* text)
{
    std::string out;
    out.reserve(std::strlen(text));
    for (const unsigned char* p = reinterpret_cast<const unsigned char*>(text); *p; ++p) {
        if (keptInUrl(*p)) {
            out += static_cast<char>(*p);
        } else {
            char escaped[4];
            std::snprintf(escaped, sizeof escaped, "%%%02X", *p);
            out += escaped;
        }
    }
    return out;
}

std::string encodedUrl(const std::string& text)
{
    return encodedUrl(text.c_str());
}

std::string decodedUrl(const char* text)
{
    std::string out;
    for (const char* p = text; *p;) {
        if (*p != '%') {
            out += *p++;
            continue;
        }
        // The two bytes after "%" are read with strtol, unvalidated: "%zz"
        // gives a NUL byte and "%4g" the byte 4. Near the end only the bytes
        // that are there are taken, so the NUL is never passed.
        char digits[3] = {0, 0, 0};
        ++p;
        for (int i = 0; i < 2 && *p; ++i)
            digits[i] = *p++;
        out += static_cast<char>(std::strtol(digits, nullptr, 16));
    }
    return out;
}

std::string decodedUrl(const std::string& text)
{
    return decodedUrl(text.c_str());
}

bool isValidUtf8(const unsigned char* text)
{
    for (const unsigned char* p = text; *p; ++p) {
        if (*p == 0xFE || *p == 0xFF)
            return false;
    }
    const unsigned char* p = text;
    if (p[0] == 0xEF && p[1] == 0xBB && p[2] == 0xBF)
        p += 3;

    int pending = 0;
    for (; *p; ++p) {
        unsigned char c = *p;
        if (pending > 0) {
            if ((c & 0xC0) != 0x80)
                return false;
            --pending;
        } else if (c < 0x80) {
            continue;
        } else if ((c & 0xE0) == 0xC0) {
            pending = 1;
        } else if ((c & 0xF0) == 0xE0) {
            pending = 2;
        } else if ((c & 0xF8) == 0xF0) {
            pending = 3;
        } else if ((c & 0xFC) == 0xF8) {
            pending = 4;  // the old five- and six-byte forms are accepted on purpose
        } else if ((c & 0xFE) == 0xFC) {
            pending = 5;
        } else {
            return false;
        }
    }
    return pending == 0;
}

bool isEscapedUtf8(const unsigned char* text, unsigned char* decoded)
{
    size_t length = std::strlen(reinterpret_cast<const char*>(text));
    if (length < 3)
        return false;

    std::unique_ptr<unsigned char[]> scratch;
    unsigned char* out = decoded;
    if (!out) {
        scratch.reset(new unsigned char[length + 1]);
        out = scratch.get();
    }

    bool escaped = false;
    unsigned char* o = out;
    for (const unsigned char* p = text; *p;) {
        if (*p != '%') {
            *o++ = *p++;
        } else if (isHexDigit(p[1]) && isHexDigit(p[2])) {
            *o++ = static_cast<unsigned char>(hexValue(p[1]) << 4 | hexValue(p[2]));
            p += 3;
            escaped = true;
        } else if (isHexDigit(p[1])) {
            // A lone digit: the "%" is dropped and the digit kept as text.
            ++p;
        } else {
            *o++ = *p++;
        }
    }
    *o = '\0';
    return escaped && isValidUtf8(out);
}

}  // namespace Vyx
