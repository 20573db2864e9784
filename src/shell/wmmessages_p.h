// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_WMMESSAGES_P_H
#define VYXCORE_WMMESSAGES_P_H

// The window manager's message catalogue: one ".msg" line per message.

#include <string>

namespace Vyx::detail {

// The message text of one catalogue line (read without its newline): blanks
// trimmed, one pair of enclosing quotes removed, and a backslash before a
// line-feed byte dropped. Any other backslash stays as written. Empty for a
// blank line.
std::string catalogueText(const std::string& line);

}  // namespace Vyx::detail

#endif
