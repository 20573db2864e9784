// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_MIMEAPPS_P_H
#define VYXCORE_MIMEAPPS_P_H

#include <string>
#include <vector>

namespace Vyx::detail {

// The mimeapps.list files that exist now, highest priority first: the
// configuration home, the configuration directories, the data home and the
// data directories, each with the desktop-specific lists before the general
// one. With lowerCaseDesktops the desktop names of XDG_CURRENT_DESKTOP are
// lower-cased, as the other desktops' tools read them.
std::vector<std::string> findMimeappsLists(bool lowerCaseDesktops);

}  // namespace Vyx::detail

#endif
