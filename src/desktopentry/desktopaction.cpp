// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "desktopentry/desktopentry_p.h"

bool VyxDesktopActionPrivate::operator==(const VyxDesktopActionPrivate& o) const
{
    return id == o.id && name == o.name && localName == o.localName && comment == o.comment &&
           localComment == o.localComment && icon == o.icon && localIcon == o.localIcon && path == o.path &&
           exec == o.exec && onlyShowIn == o.onlyShowIn && notShowIn == o.notShowIn;
}

VyxDesktopAction::VyxDesktopAction(const std::string& id) : d(new VyxDesktopActionPrivate)
{
    d->id = id;
}

VyxDesktopAction::VyxDesktopAction(const VyxDesktopAction& other) : d(new VyxDesktopActionPrivate(*other.d)) { }

VyxDesktopAction::VyxDesktopAction(VyxDesktopAction&& other) noexcept : d(std::move(other.d))
{
    other.d.reset(new VyxDesktopActionPrivate);
}

VyxDesktopAction& VyxDesktopAction::operator=(const VyxDesktopAction& other)
{
    if (this != &other)
        *d = *other.d;
    return *this;
}

VyxDesktopAction& VyxDesktopAction::operator=(VyxDesktopAction&& other) noexcept
{
    std::swap(d, other.d);
    return *this;
}

VyxDesktopAction::~VyxDesktopAction() = default;

bool VyxDesktopAction::operator==(const VyxDesktopAction& other) const
{
    return *d == *other.d;
}

#define VYX_ACTION_FIELD(Type, getter, setter)                                                                         \
    const Type& VyxDesktopAction::getter() const                                                                       \
    {                                                                                                                  \
        return d->getter;                                                                                              \
    }                                                                                                                  \
    void VyxDesktopAction::setter(const Type& value)                                                                   \
    {                                                                                                                  \
        d->getter = value;                                                                                             \
    }

VYX_ACTION_FIELD(std::string, id, setId)
VYX_ACTION_FIELD(std::string, name, setName)
VYX_ACTION_FIELD(std::string, localName, setLocalName)
VYX_ACTION_FIELD(std::string, comment, setComment)
VYX_ACTION_FIELD(std::string, localComment, setLocalComment)
VYX_ACTION_FIELD(std::string, icon, setIcon)
VYX_ACTION_FIELD(std::string, localIcon, setLocalIcon)
VYX_ACTION_FIELD(std::string, path, setPath)
VYX_ACTION_FIELD(std::string, exec, setExec)
VYX_ACTION_FIELD(std::vector<std::string>, onlyShowIn, setOnlyShowIn)
VYX_ACTION_FIELD(std::vector<std::string>, notShowIn, setNotShowIn)

#undef VYX_ACTION_FIELD

const std::string& VyxDesktopAction::localNameOrFallback() const
{
    return d->localName.empty() ? d->name : d->localName;
}

const std::string& VyxDesktopAction::localCommentOrFallback() const
{
    return d->localComment.empty() ? d->comment : d->localComment;
}

const std::string& VyxDesktopAction::localIconOrFallback() const
{
    return d->localIcon.empty() ? d->icon : d->localIcon;
}
