// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_GLOBMATCH_P_H
#define VYXCORE_GLOBMATCH_P_H

namespace Vyx::detail {

// Whether name matches the shell pattern ("*", "?", "[a-z]", "[!x]",
// "[[:digit:]]", "\" escapes), byte by byte, "/" and leading dots not
// special. Takes time proportional to the product of the two lengths at
// worst: patterns come from files anyone may write, and a backtracking
// matcher can be made to run for ever with a few stars.
bool globMatch(const char* pattern, const char* name);

}  // namespace Vyx::detail

#endif
