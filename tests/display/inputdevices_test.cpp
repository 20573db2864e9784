// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Touch and tablet devices: the classification against scripted devices
// (no virtual server has a touchscreen or a pen), the real query against
// Xvfb, whose only slave pointer is its test device.

#include "display/inputdevices_p.h"
#include "support/xvfb.h"

#include <vyxdisplay.h>

#include <X11/extensions/XI2.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Vyx::detail::XiDeviceFacts;

class ScriptedInput : public Vyx::detail::InputServer {
public:
    bool xi2 = true, answers = true;
    int queries = 0;
    std::vector<XiDeviceFacts> devices;

    bool hasXInput2() override { return xi2; }
    bool queryDevices(std::vector<XiDeviceFacts>* out) override
    {
        ++queries;
        *out = devices;
        return answers;
    }
};

TEST(InputDevices, TouchClassesThenNamesAndPenAxes)
{
    ScriptedInput server;
    server.devices = {
        {2, "Virtual core pointer", XIMasterPointer, XIDirectTouch, {}},
        {4, "Virtual core XTEST pointer", XISlavePointer, 0, {"Rel X", "Rel Y"}},
        {9, "ELAN Touchscreen", XISlavePointer, XIDirectTouch, {"Abs MT Position X"}},
        {10, "DELL Touchpad", XISlavePointer, XIDependentTouch, {}},
        {11, "SynPS/2 Synaptics TouchPad", XISlavePointer, 0, {"Abs X", "Abs Pressure"}},
        {12, "Wacom Intuos S Pen", XISlavePointer, 0, {}},
        {13, "HID 256c:006e", XISlavePointer, 0, {"Abs X", "Abs Y", "Abs Tilt X"}},
        {14, "Openmouse Penguin", XISlavePointer, 0, {"Rel X"}},
        {15, "Wacom Intuos S Pen eraser", XIFloatingSlave, 0, {"Abs Pressure"}},
        {16, "Pen keyboard", XISlaveKeyboard, 0, {}},
        {17, "GAOMON TABLET", XISlavePointer, 0, {}},
    };
    std::vector<VyxInputDevice> found = Vyx::detail::touchAndTabletDevices(server);
    using Kinds = std::vector<std::pair<int, VyxInputDeviceKind>>;
    Kinds kinds;
    for (const VyxInputDevice& device : found)
        kinds.emplace_back(device.id, device.kind);
    const Kinds expected = {{9, TouchscreenDevice}, {10, TouchpadDevice}, {11, TouchpadDevice},
                            {12, TabletDevice},     {13, TabletDevice},   {17, TabletDevice}};
    ASSERT_EQ(kinds, expected);
    EXPECT_EQ(found[0].name, "ELAN Touchscreen");

    server.answers = false;
    EXPECT_TRUE(Vyx::detail::touchAndTabletDevices(server).empty()) << "a refused query lists nothing";
    server.answers = true;
    server.xi2 = false;
    EXPECT_TRUE(Vyx::detail::touchAndTabletDevices(server).empty());
    EXPECT_EQ(server.queries, 2) << "without XInput 2 the devices are not asked for";
}

class InputDevicesXvfb : public vyxtest::XvfbTest { };

TEST_F(InputDevicesXvfb, TheRealServerIsAskedAndHasNone)
{
    EXPECT_TRUE(findTouchAndTabletDevices(display()).empty());
    EXPECT_TRUE(findTouchAndTabletDevices(nullptr).empty());

    // What the empty answer rests on: the query worked and saw the devices.
    std::unique_ptr<Vyx::detail::InputServer> server = Vyx::detail::connectInputServer(display());
    ASSERT_TRUE(server->hasXInput2());
    std::vector<XiDeviceFacts> devices;
    ASSERT_TRUE(server->queryDevices(&devices));
    auto xtest = std::find_if(devices.begin(), devices.end(),
                              [](const XiDeviceFacts& d) { return d.name == "Virtual core XTEST pointer"; });
    ASSERT_NE(xtest, devices.end());
    EXPECT_EQ(xtest->use, XISlavePointer);
    EXPECT_FALSE(xtest->valuatorLabels.empty()) << "its axes have named labels";
}

}  // namespace
