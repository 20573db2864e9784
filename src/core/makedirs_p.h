// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of core, open to every folder of the library.

#ifndef VYXCORE_MAKEDIRS_P_H
#define VYXCORE_MAKEDIRS_P_H

#include <string>

namespace Vyx::detail {

// Makes the directory path and each missing parent, mode 0700; true when it
// exists afterwards. Done in code: a path from the environment never goes
// near a shell.
bool makePrivateDirectories(const std::string& path);

}  // namespace Vyx::detail

#endif
