// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_DESKTOPID_P_H
#define VYXCORE_DESKTOPID_P_H

// Internal interface of desktopentry, open to mime and shell.
//
// Desktop-file ids: the name other programs use for an installed
// application, its path below an application directory with "/" written as
// "-" ("kde/viewer.desktop" is "kde-viewer.desktop").

#include <string>

namespace Vyx::detail {

// Whether id can name a desktop file at all: ends in ".desktop", has no
// "/", no control byte, no blank and none of "=;[]", and does not start
// with "." (so ".." and hidden files are out).
bool isWellFormedDesktopId(const std::string& id);

// The desktop file of the installed application id: the first application
// directory that holds it, directly or one folder down; empty when none
// does or id is not well formed.
std::string desktopIdPath(const std::string& id);

// The id of a desktop file below one of the application directories; its
// file name when it lies elsewhere.
std::string desktopIdOf(const std::string& path);

}  // namespace Vyx::detail

#endif
