// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "core/diag_p.h"

#include <cstdarg>
#include <cstdio>
#include <string>

namespace Vyx::detail {

void vdiag(const char* prefix, const char* format, va_list args)
{
    std::string message;
    if (prefix && *prefix) {
        message = prefix;
        message += ' ';
    }
    va_list again;
    va_copy(again, args);
    const int length = std::vsnprintf(nullptr, 0, format, args);
    if (length > 0) {
        const size_t start = message.size();
        message.resize(start + size_t(length) + 1);
        std::vsnprintf(message.data() + start, size_t(length) + 1, format, again);
        message.resize(start + size_t(length));
    }
    va_end(again);
    std::fwrite(message.data(), 1, message.size(), stderr);
}

void diag(const char* prefix, const char* format, ...)
{
    va_list args;
    va_start(args, format);
    vdiag(prefix, format, args);
    va_end(args);
}

}  // namespace Vyx::detail
