// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_PATHPROBE_P_H
#define VYXCORE_PATHPROBE_P_H

#include <cstddef>
#include <string>

namespace Vyx::detail {

// Whether path is a regular file (or a link to one): a directory that
// happens to carry a file's name is not what a lookup wants.
bool isRegularFile(const std::string& path);

// The first base + extension, in the order given, that is a regular file;
// empty when none is.
std::string firstRegularFile(const std::string& base, const char* const* extensions, size_t count);

}  // namespace Vyx::detail

#endif
