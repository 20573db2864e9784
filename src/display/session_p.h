// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_DISPLAY_SESSION_P_H
#define VYXCORE_DISPLAY_SESSION_P_H

namespace Vyx::detail {

// The nesting rule on the server's vendor text: true when it contains
// "Xephyr", ignoring case. False for null.
bool vendorMeansNested(const char* vendor);

}  // namespace Vyx::detail

#endif
