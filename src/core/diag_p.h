// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of core, open to every folder of the library.

#ifndef VYXCORE_DIAG_P_H
#define VYXCORE_DIAG_P_H

#include <cstdarg>

namespace Vyx::detail {

// The prefixes the library's messages start with.
inline constexpr const char* kLibraryPrefix = "libvyxcore:";
inline constexpr const char* kToolPrefix = "vyxcore:";

// Writes one message to standard error: the prefix, a space, then the
// formatted text (a null or empty prefix writes the text alone). The text
// carries its own line break, as the messages differ on that. The whole
// message goes out in one write, so messages of two threads never mix.
// Safe from any thread.
void diag(const char* prefix, const char* format, ...) __attribute__((format(printf, 2, 3)));
// The same for callers that take their own variable arguments (a guarded
// trace, say). args is used up.
void vdiag(const char* prefix, const char* format, va_list args) __attribute__((format(printf, 2, 0)));

}  // namespace Vyx::detail

#endif
