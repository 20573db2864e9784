// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_INPUTDEVICES_P_H
#define VYXCORE_INPUTDEVICES_P_H

// The two questions the input-device code asks the X server, behind a small
// interface so that the classification can be run against scripted devices
// (touchscreens and tablets no virtual server has) as well as a real server.

#include "vyxdisplay.h"

#include <memory>
#include <string>
#include <vector>

namespace Vyx::detail {

// What XInput 2 tells of one device.
struct XiDeviceFacts {
    int id = 0;
    std::string name;
    int use = 0;  // XIMasterPointer ... XIFloatingSlave
    int touchMode = 0;  // XIDirectTouch or XIDependentTouch; 0 without a touch class
    std::vector<std::string> valuatorLabels;  // the labels' atom names; unlabelled ones left out
};

class InputServer {
public:
    virtual ~InputServer() = default;

    // True when the server speaks XInput 2 to this client.
    virtual bool hasXInput2() = 0;
    // Every device the server knows; false when it refuses the query.
    virtual bool queryDevices(std::vector<XiDeviceFacts>* devices) = 0;
};

// The real server behind dpy (not null).
std::unique_ptr<InputServer> connectInputServer(Display* dpy);

// The kind of a device, false when it is none of them.
bool classifyInputDevice(const XiDeviceFacts& device, VyxInputDeviceKind* kind);

// findTouchAndTabletDevices over any server.
std::vector<VyxInputDevice> touchAndTabletDevices(InputServer& server);

}  // namespace Vyx::detail

#endif
