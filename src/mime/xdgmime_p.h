// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_XDGMIME_P_H
#define VYXCORE_XDGMIME_P_H

#include <cstddef>

namespace Vyx::detail {

// The type of a file named fileName (may be null) whose first bytes are
// data, by the same rules as xdg_mime_get_mime_type_for_file but without
// reading the file: for callers that hold the bytes already.
const char* guessMimeType(const char* fileName, const void* data, size_t length);

}  // namespace Vyx::detail

#endif
