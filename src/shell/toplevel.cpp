// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Small helpers the desktop's programs share: finding a top-level window by
// name, and the organisation that ships the desktop.

#include "vyxsession.h"
#include "vyxstrings.h"

#include "display/xerrortrap_p.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstring>

namespace {

// The first string of a text property, converted to the locale's encoding
// (a Latin-1 or UTF-8 title compares with a name in the caller's locale);
// false when the property is missing or nothing converts.
bool localeTextEquals(Display* display, XTextProperty& property, const char* name)
{
    if (!property.value)
        return false;
    char** list = nullptr;
    int count = 0;
    bool equal = false;
    // A positive answer counts unconvertible characters: the rest is usable.
    if (XmbTextPropertyToTextList(display, &property, &list, &count) >= Success && list) {
        equal = count > 0 && list[0] && std::strcmp(list[0], name) == 0;
        XFreeStringList(list);
    }
    return equal;
}

bool wmNameIs(Display* display, Window window, const char* name)
{
    XTextProperty property = {};
    if (!XGetWMName(display, window, &property))
        return false;
    bool equal = localeTextEquals(display, property, name);
    XFree(property.value);
    return equal;
}

bool classHintStartsWith(Display* display, Window window, const char* name)
{
    XClassHint hint = {nullptr, nullptr};
    if (!XGetClassHint(display, window, &hint))
        return false;
    // Each half requires the OTHER field, as it always has; a missing field
    // of its own is a mismatch here rather than a crash.
    bool match = (hint.res_class && hint.res_name && Vyx::startsWith(hint.res_name, name)) ||
                 (hint.res_name && hint.res_class && Vyx::startsWith(hint.res_class, name));
    XFree(hint.res_name);
    XFree(hint.res_class);
    return match;
}

bool iconNameIs(Display* display, Window window, const char* name)
{
    XTextProperty property = {};
    if (!XGetWMIconName(display, window, &property))
        return false;
    char** list = nullptr;
    int count = 0;
    bool equal = false;
    if (property.value && XTextPropertyToStringList(&property, &list, &count)) {
        equal = count > 0 && list[0] && std::strcmp(list[0], name) == 0;
        XFreeStringList(list);
    }
    XFree(property.value);
    return equal;
}

}  // namespace

Window FindToplevelWindowByName(Display* display, Window parent, const char* name)
{
    if (!display || !name)
        return 0;
    Vyx::detail::XErrorTrap trap(display);
    Window root = 0, parentOfParent = 0;
    Window* children = nullptr;
    unsigned int count = 0;
    if (!XQueryTree(display, parent, &root, &parentOfParent, &children, &count))
        return 0;

    Window found = 0;
    for (bool (*matches)(Display*, Window, const char*) : {wmNameIs, classHintStartsWith, iconNameIs}) {
        for (unsigned int i = 0; i < count && !found; ++i) {
            if (matches(display, children[i], name))
                found = children[i];
        }
        if (found)
            break;
    }
    if (children)
        XFree(children);
    return found;
}

std::string GetOrganization()
{
    return "quorbitek";
}
