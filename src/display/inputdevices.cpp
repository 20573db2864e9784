// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "display/inputdevices_p.h"

#include "display/xerrortrap_p.h"

#include <X11/Xlib.h>
#include <X11/extensions/XInput2.h>

#include <algorithm>
#include <cctype>
#include <initializer_list>

namespace Vyx::detail {

namespace {

class RealInputServer final : public InputServer {
public:
    explicit RealInputServer(Display* dpy) : m_dpy(dpy) { }

    bool hasXInput2() override
    {
        // Asked first so that a server without the extension gets no
        // request of it and libXi prints nothing.
        int opcode = 0, eventBase = 0, errorBase = 0;
        if (!XQueryExtension(m_dpy, "XInputExtension", &opcode, &eventBase, &errorBase))
            return false;
        // 2.2 is the first version with touch classes. A connection that
        // already agreed on a higher version (toolkits ask for 2.3 or 2.4)
        // may be refused a lower one by older servers; it speaks XInput 2
        // all the same, so a refusal still counts as yes.
        int major = 2, minor = 2;
        XErrorTrap trap(m_dpy);
        return XIQueryVersion(m_dpy, &major, &minor) != Success || major >= 2;
    }

    bool queryDevices(std::vector<XiDeviceFacts>* devices) override
    {
        XErrorTrap trap(m_dpy);
        int count = 0;
        XIDeviceInfo* infos = XIQueryDevice(m_dpy, XIAllDevices, &count);
        if (!infos)
            return false;
        for (int i = 0; i < count; ++i) {
            const XIDeviceInfo& info = infos[i];
            XiDeviceFacts facts;
            facts.id = info.deviceid;
            facts.name = info.name ? info.name : "";
            facts.use = info.use;
            std::vector<Atom> labels;
            for (int j = 0; j < info.num_classes; ++j) {
                const XIAnyClassInfo* any = info.classes[j];
                if (any->type == XITouchClass)
                    facts.touchMode = reinterpret_cast<const XITouchClassInfo*>(any)->mode;
                else if (any->type == XIValuatorClass) {
                    const Atom label = reinterpret_cast<const XIValuatorClassInfo*>(any)->label;
                    if (label != None)
                        labels.push_back(label);
                }
            }
            facts.valuatorLabels = atomNames(labels);
            devices->push_back(std::move(facts));
        }
        XIFreeDeviceInfo(infos);
        return true;
    }

private:
    // Names the server cannot give are left out.
    std::vector<std::string> atomNames(std::vector<Atom>& atoms)
    {
        std::vector<std::string> out;
        if (atoms.empty())
            return out;
        std::vector<char*> names(atoms.size(), nullptr);
        XGetAtomNames(m_dpy, atoms.data(), int(atoms.size()), names.data());
        for (char* name : names) {
            if (name) {
                out.emplace_back(name);
                XFree(name);
            }
        }
        return out;
    }

    Display* m_dpy;
};

// True when one of words is a whole word of name, case ignored: "pen" is
// found in "Wacom Intuos S Pen" but not in "Openmouse".
bool hasWord(const std::string& name, std::initializer_list<const char*> words)
{
    size_t i = 0;
    while (i < name.size()) {
        while (i < name.size() && !std::isalnum(static_cast<unsigned char>(name[i])))
            ++i;
        std::string word;
        for (; i < name.size() && std::isalnum(static_cast<unsigned char>(name[i])); ++i)
            word += char(std::tolower(static_cast<unsigned char>(name[i])));
        if (!word.empty() &&
            std::find_if(words.begin(), words.end(), [&word](const char* w) { return word == w; }) != words.end())
            return true;
    }
    return false;
}

}  // namespace

std::unique_ptr<InputServer> connectInputServer(Display* dpy)
{
    return std::make_unique<RealInputServer>(dpy);
}

bool classifyInputDevice(const XiDeviceFacts& device, VyxInputDeviceKind* kind)
{
    // Master devices only mirror their slaves, and floating slaves do not
    // move the desktop's pointer.
    if (device.use != XISlavePointer)
        return false;
    if (device.touchMode == XIDirectTouch) {
        *kind = TouchscreenDevice;
        return true;
    }
    if (device.touchMode == XIDependentTouch) {
        *kind = TouchpadDevice;
        return true;
    }
    // Touchpad drivers without touch classes report pressure too; the name
    // is what tells them from a pen.
    if (hasWord(device.name, {"touchpad", "trackpad"})) {
        *kind = TouchpadDevice;
        return true;
    }
    const std::vector<std::string>& labels = device.valuatorLabels;
    const bool penAxes = std::find_if(labels.begin(), labels.end(), [](const std::string& label) {
                             return label == "Abs Pressure" || label == "Abs Tilt X" || label == "Abs Tilt Y";
                         }) != labels.end();
    if (penAxes || hasWord(device.name, {"stylus", "pen", "eraser", "tablet"})) {
        *kind = TabletDevice;
        return true;
    }
    return false;
}

std::vector<VyxInputDevice> touchAndTabletDevices(InputServer& server)
{
    std::vector<VyxInputDevice> found;
    std::vector<XiDeviceFacts> devices;
    if (!server.hasXInput2() || !server.queryDevices(&devices))
        return found;
    for (const XiDeviceFacts& device : devices) {
        VyxInputDeviceKind kind;
        if (classifyInputDevice(device, &kind))
            found.push_back({device.id, device.name, kind});
    }
    return found;
}

}  // namespace Vyx::detail

std::vector<VyxInputDevice> findTouchAndTabletDevices(Display* dpy)
{
    if (!dpy)
        return {};
    return Vyx::detail::touchAndTabletDevices(*Vyx::detail::connectInputServer(dpy));
}
