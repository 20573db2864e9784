// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_ICONCACHEWALK_P_H
#define VYXCORE_ICONCACHEWALK_P_H

// The walk over every image an icon-theme.cache lists, for the readers that
// want all of it at once rather than one name at a time.

#include <cstdint>
#include <functional>
#include <vector>

namespace Vyx::detail {
class ByteView;

// The directory names of the cache in bytes by index into *dirs, and
// visit(icon name, directory index, flags) once per image. Every read stays
// inside bytes; false when a damaged part ends the walk early.
bool forEachCachedImage(const ByteView& bytes, std::vector<const char*>* dirs,
                        const std::function<void(const char*, uint16_t, uint16_t)>& visit);

}  // namespace Vyx::detail

#endif
