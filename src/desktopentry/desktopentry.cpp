// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "desktopentry/desktopentry_p.h"
#include "desktopentry/entryfields_p.h"

#include <climits>
#include <cstring>
#include <unistd.h>

using Vyx::detail::EntryField;
using Vyx::detail::EntryFieldKind;
using Vyx::detail::kEntryFields;

// --- private data -----------------------------------------------------------

VyxDesktopEntryPrivate::VyxDesktopEntryPrivate() : languages(GetLangPref()) { }

std::string VyxDesktopEntryPrivate::localized(const char* key) const
{
    return languages.empty() ? std::string(key) : Vyx::concat(key, '[', languages.front(), ']');
}

bool VyxDesktopEntryPrivate::isParameterLocalized(const char* fullKey, const char* baseKey) const
{
    return languageRank(fullKey, baseKey) >= 0;
}

int VyxDesktopEntryPrivate::languageRank(const char* fullKey, const char* baseKey) const
{
    size_t baseLength = std::strlen(baseKey);
    if (std::strncmp(fullKey, baseKey, baseLength) != 0 || fullKey[baseLength] != '[')
        return -1;
    const char* code = fullKey + baseLength + 1;
    for (size_t i = 0; i < languages.size(); ++i) {
        const std::string& language = languages[i];
        if (std::strncmp(code, language.c_str(), language.size()) == 0 && Vyx::equal(code + language.size(), "]"))
            return static_cast<int>(i);
    }
    return -1;
}

void VyxDesktopEntryPrivate::resetAllLists()
{
    // Lists and translations start empty; plain values and flags are
    // replaced only by the keys the new file has, and survive a load that
    // fails (kept as it was).
    for (const EntryField& field : kEntryFields) {
        if (field.list)
            (this->*field.list).clear();
        if (field.localText)
            (this->*field.localText).clear();
        if (field.localList)
            (this->*field.localList).clear();
        if (field.kind == EntryFieldKind::Actions)
            actions.clear();
    }
    std::lock_guard<std::mutex> lock(unknownsMutex);
    unknowns.clear();
    unreadUnknowns.clear();
}

const VyxDesktopEntryPrivate::UnknownList& VyxDesktopEntryPrivate::unknownList() const
{
    std::lock_guard<std::mutex> lock(unknownsMutex);
    // Names and values hold no NUL: the reader's text ends at the first.
    for (size_t at = 0; at < unreadUnknowns.size();) {
        const char* key = unreadUnknowns.c_str() + at;
        const size_t keyLength = std::strlen(key);
        const char* value = key + keyLength + 1;
        const size_t valueLength = std::strlen(value);
        unknowns.emplace_back(std::string(key, keyLength), std::string(value, valueLength));
        at += keyLength + valueLength + 2;
    }
    std::string().swap(unreadUnknowns);
    return unknowns;
}

std::string VyxDesktopEntryPrivate::unknownValue(const char* key) const
{
    std::lock_guard<std::mutex> lock(unknownsMutex);
    for (const auto& unknown : unknowns) {
        if (unknown.first == key)
            return unknown.second;
    }
    for (size_t at = 0; at < unreadUnknowns.size();) {
        const char* name = unreadUnknowns.c_str() + at;
        const size_t nameLength = std::strlen(name);
        const char* value = name + nameLength + 1;
        if (std::strcmp(name, key) == 0)
            return value;
        at += nameLength + std::strlen(value) + 2;
    }
    return std::string();
}

VyxDesktopEntryPrivate::UnknownList& VyxDesktopEntryPrivate::unknownListToChange()
{
    unknownList();
    return unknowns;
}

namespace {

template <typename T> bool isUnset(const T& value)
{
    return value.empty();
}

bool isUnset(const OptionalBool& value)
{
    return !value.present;
}

template <typename T> void take(T& target, const T& source, VyxDesktopEntryPrivate::ReplaceFieldsMethod method)
{
    bool replace = method == VyxDesktopEntryPrivate::CopyAll ||
                   (method == VyxDesktopEntryPrivate::InheritMissing && isUnset(target)) ||
                   (method == VyxDesktopEntryPrivate::OverrideWithSet && !isUnset(source));
    if (replace)
        target = source;
}

// Calls visit(member pointer) for every member a row of the table holds;
// the action list stands for the Actions row.
template <typename Visit> void forEachMember(const EntryField& field, Visit&& visit)
{
    if (field.text)
        visit(field.text);
    if (field.list)
        visit(field.list);
    if (field.flag)
        visit(field.flag);
    if (field.localText)
        visit(field.localText);
    if (field.localList)
        visit(field.localList);
    if (field.kind == EntryFieldKind::Actions)
        visit(&VyxDesktopEntryPrivate::actions);
}

}  // namespace

bool VyxDesktopEntryPrivate::operator==(const VyxDesktopEntryPrivate& o) const
{
    // The bound file and the load state are not content; the languages
    // are, as they say what the translations are in.
    for (const EntryField& field : kEntryFields) {
        bool same = true;
        forEachMember(field, [&](auto member) { same = same && this->*member == o.*member; });
        if (!same)
            return false;
    }
    return languages == o.languages && unknownList() == o.unknownList();
}

void VyxDesktopEntryPrivate::copyFrom(const VyxDesktopEntryPrivate& o, ReplaceFieldsMethod m)
{
    // Actions and unknown keys are taken as a whole, never merged item by item.
    for (const EntryField& field : kEntryFields)
        forEachMember(field, [&](auto member) { take(this->*member, o.*member, m); });
    take(languages, o.languages, m);
    take(unknownListToChange(), o.unknownList(), m);
}

// --- the handle ---------------------------------------------------------------

VyxDesktopEntry::VyxDesktopEntry(const std::string& path) : d(new VyxDesktopEntryPrivate)
{
    if (!path.empty()) {
        setFilePath(path);
        load();
    }
}

VyxDesktopEntry::VyxDesktopEntry(VyxDesktopEntry&& other) noexcept : d(std::move(other.d))
{
    other.d.reset(new VyxDesktopEntryPrivate);
}

VyxDesktopEntry& VyxDesktopEntry::operator=(VyxDesktopEntry&& other) noexcept
{
    std::swap(d, other.d);
    return *this;
}

VyxDesktopEntry::~VyxDesktopEntry() = default;

const std::string& VyxDesktopEntry::filePath() const
{
    return d->filePath;
}

void VyxDesktopEntry::setFilePath(const std::string& path)
{
    if (path == d->filePath)
        return;
    d->filePath.clear();
    d->loaded = false;
    d->validity = -1;
    if (path.empty())
        return;
    if (path[0] == '/') {
        d->filePath = path;
        return;
    }
    char cwd[4096];
    if (getcwd(cwd, sizeof cwd))
        d->filePath = Vyx::concat(cwd, '/', path);
}

bool VyxDesktopEntry::load()
{
    return d->load();
}

bool VyxDesktopEntry::isLoaded() const
{
    return d->loaded;
}

bool VyxDesktopEntry::isValid() const
{
    if (d->validity == -1) {
        Vyx::detail::IniReader ini;
        d->validity = !d->filePath.empty() && ini.loadFile(d->filePath) ? 1 : 0;
    }
    return d->validity != 0;
}

bool VyxDesktopEntry::save(Vyx::tagged_bool<SaveEmptyFields_tag> saveEmpty)
{
    return d->save(static_cast<bool>(saveEmpty));
}

bool VyxDesktopEntry::saveAs(const std::string& path, Vyx::tagged_bool<SaveEmptyFields_tag> saveEmpty)
{
    std::string ownPath = d->filePath;
    int16_t ownValidity = d->validity;
    bool ownLoaded = d->loaded;
    setFilePath(path);
    bool saved = d->save(static_cast<bool>(saveEmpty));
    d->filePath = ownPath;
    d->validity = ownValidity;
    d->loaded = ownLoaded;
    return saved;
}

bool VyxDesktopEntry::identicalTo(const VyxDesktopEntry& other) const
{
    return *d == *other.d;
}

void VyxDesktopEntry::copyFrom(const VyxDesktopEntry& other)
{
    d->copyFrom(*other.d, VyxDesktopEntryPrivate::CopyAll);
}

void VyxDesktopEntry::inheritFrom(const VyxDesktopEntry& other)
{
    d->copyFrom(*other.d, VyxDesktopEntryPrivate::InheritMissing);
}

void VyxDesktopEntry::overrideFrom(const VyxDesktopEntry& other)
{
    d->copyFrom(*other.d, VyxDesktopEntryPrivate::OverrideWithSet);
}

#define VYX_ENTRY_FIELD(Type, getter, setter)                                                                          \
    const Type& VyxDesktopEntry::getter() const                                                                        \
    {                                                                                                                  \
        return d->getter;                                                                                              \
    }                                                                                                                  \
    void VyxDesktopEntry::setter(const Type& value)                                                                    \
    {                                                                                                                  \
        d->getter = value;                                                                                             \
    }

VYX_ENTRY_FIELD(std::string, name, setName)
VYX_ENTRY_FIELD(std::string, localName, setLocalName)
VYX_ENTRY_FIELD(std::string, genericName, setGenericName)
VYX_ENTRY_FIELD(std::string, localGenericName, setLocalGenericName)
VYX_ENTRY_FIELD(std::string, type, setType)
VYX_ENTRY_FIELD(std::string, tryExec, setTryExec)
VYX_ENTRY_FIELD(std::string, comment, setComment)
VYX_ENTRY_FIELD(std::string, localComment, setLocalComment)
VYX_ENTRY_FIELD(std::string, exec, setExec)
VYX_ENTRY_FIELD(std::string, icon, setIcon)
VYX_ENTRY_FIELD(std::string, localIcon, setLocalIcon)
VYX_ENTRY_FIELD(std::string, path, setPath)
VYX_ENTRY_FIELD(std::string, startupWMClass, setStartupWMClass)
VYX_ENTRY_FIELD(std::string, version, setVersion)
VYX_ENTRY_FIELD(std::string, url, setUrl)
VYX_ENTRY_FIELD(std::vector<std::string>, mimeType, setMimeType)
VYX_ENTRY_FIELD(std::vector<std::string>, keywords, setKeywords)
VYX_ENTRY_FIELD(std::vector<std::string>, localKeywords, setLocalKeywords)
VYX_ENTRY_FIELD(std::vector<std::string>, sortOrder, setSortOrder)
VYX_ENTRY_FIELD(std::vector<std::string>, categories, setCategories)
VYX_ENTRY_FIELD(std::vector<std::string>, onlyShowIn, setOnlyShowIn)
VYX_ENTRY_FIELD(std::vector<std::string>, notShowIn, setNotShowIn)
VYX_ENTRY_FIELD(std::vector<VyxDesktopAction>, actions, setActions)

const std::vector<std::pair<std::string, std::string>>& VyxDesktopEntry::unknowns() const
{
    return d->unknownList();
}

void VyxDesktopEntry::setUnknowns(const std::vector<std::pair<std::string, std::string>>& value)
{
    d->unknownListToChange() = value;
}

#undef VYX_ENTRY_FIELD

#define VYX_ENTRY_BOOL(has, getter, setter)                                                                            \
    bool VyxDesktopEntry::has() const                                                                                  \
    {                                                                                                                  \
        return d->getter.present;                                                                                      \
    }                                                                                                                  \
    bool VyxDesktopEntry::getter() const                                                                               \
    {                                                                                                                  \
        return d->getter.value;                                                                                        \
    }                                                                                                                  \
    void VyxDesktopEntry::setter(bool value)                                                                           \
    {                                                                                                                  \
        d->getter = {true, value};                                                                                     \
    }

VYX_ENTRY_BOOL(hasNoDisplay, noDisplay, setNoDisplay)
VYX_ENTRY_BOOL(hasHidden, hidden, setHidden)
VYX_ENTRY_BOOL(hasTerminal, terminal, setTerminal)
VYX_ENTRY_BOOL(hasStartupNotify, startupNotify, setStartupNotify)
VYX_ENTRY_BOOL(hasPrefersNonDefaultGPU, prefersNonDefaultGPU, setPrefersNonDefaultGPU)
VYX_ENTRY_BOOL(hasSingleMainWindow, singleMainWindow, setSingleMainWindow)

#undef VYX_ENTRY_BOOL

std::string VyxDesktopEntry::getUnknownValue(const char* key) const
{
    if (!key || !*key)
        return std::string();
    return d->unknownValue(key);
}

const std::string& VyxDesktopEntry::localNameOrFallback() const
{
    return d->localName.empty() ? d->name : d->localName;
}

const std::string& VyxDesktopEntry::localGenericNameOrFallback() const
{
    return d->localGenericName.empty() ? d->genericName : d->localGenericName;
}

const std::string& VyxDesktopEntry::localCommentOrFallback() const
{
    return d->localComment.empty() ? d->comment : d->localComment;
}

const std::string& VyxDesktopEntry::localIconOrFallback() const
{
    return d->localIcon.empty() ? d->icon : d->localIcon;
}

const std::vector<std::string>& VyxDesktopEntry::localKeywordsOrFallback() const
{
    return d->localKeywords.empty() ? d->keywords : d->localKeywords;
}
