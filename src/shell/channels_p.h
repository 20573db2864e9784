// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_CHANNELS_P_H
#define VYXCORE_CHANNELS_P_H

// What the window-manager FIFO and the display-manager socket share.

#include <string>

typedef struct _XDisplay Display;

namespace Vyx::detail {

// The display the channels belong to: display's display string when a
// connection is given, else $DISPLAY; empty when neither names one.
std::string channelDisplayName(Display* display);

}  // namespace Vyx::detail

#endif
