// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_ENTRYFIELDS_P_H
#define VYXCORE_ENTRYFIELDS_P_H

// The keys of an entry's main group that the model holds, described once in
// the order a save writes them. Loading, saving, copying, comparing and
// resetting all walk this table, so a new key is one row here beside its
// member and its accessors.

#include "desktopentry/desktopentry_p.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Vyx::detail {

enum class EntryFieldKind : uint8_t {
    Text,  // a string
    List,  // split at "," and ";" when read, joined by ";" when written
    Flag,  // a boolean that may be missing
    Actions,  // the ids of the action groups, read and written with them
};

struct EntryField {
    using Entry = VyxDesktopEntryPrivate;
    using Text = std::string Entry::*;
    using List = std::vector<std::string> Entry::*;
    using Flag = OptionalBool Entry::*;

    // Read with the group's own lookup rather than by its exact spelling
    // (the name is the one key every entry has, and a file spelling it
    // "name" has always been read as such).
    static constexpr uint8_t kLookedUp = 1;
    // Written only for entries of type Link: the others have no use for it.
    static constexpr uint8_t kLinkOnly = 2;

    const char* key;
    EntryFieldKind kind;
    uint8_t rules;
    // The member of the kind; the others stay null.
    Text text;
    List list;
    Flag flag;
    // Our translation, "key[language]" under the first of our languages,
    // for the translatable text and list keys; null otherwise.
    Text localText;
    List localList;

    constexpr bool translatable() const { return localText || localList; }
};

constexpr EntryField textField(const char* key, EntryField::Text member, EntryField::Text local = nullptr,
                               uint8_t rules = 0)
{
    return {key, EntryFieldKind::Text, rules, member, nullptr, nullptr, local, nullptr};
}

constexpr EntryField listField(const char* key, EntryField::List member, EntryField::List local = nullptr)
{
    return {key, EntryFieldKind::List, 0, nullptr, member, nullptr, nullptr, local};
}

constexpr EntryField flagField(const char* key, EntryField::Flag member)
{
    return {key, EntryFieldKind::Flag, 0, nullptr, nullptr, member, nullptr, nullptr};
}

using EntryModel = VyxDesktopEntryPrivate;

inline constexpr EntryField kEntryFields[] = {
    textField("Name", &EntryModel::name, &EntryModel::localName, EntryField::kLookedUp),
    textField("GenericName", &EntryModel::genericName, &EntryModel::localGenericName),
    textField("Type", &EntryModel::type),
    textField("TryExec", &EntryModel::tryExec),
    flagField("NoDisplay", &EntryModel::noDisplay),
    textField("Comment", &EntryModel::comment, &EntryModel::localComment),
    textField("Exec", &EntryModel::exec),
    {"Actions", EntryFieldKind::Actions, 0, nullptr, nullptr, nullptr, nullptr, nullptr},
    textField("Icon", &EntryModel::icon, &EntryModel::localIcon),
    flagField("Hidden", &EntryModel::hidden),
    textField("Path", &EntryModel::path),
    flagField("Terminal", &EntryModel::terminal),
    flagField("StartupNotify", &EntryModel::startupNotify),
    textField("StartupWMClass", &EntryModel::startupWMClass),
    flagField("PrefersNonDefaultGPU", &EntryModel::prefersNonDefaultGPU),
    flagField("SingleMainWindow", &EntryModel::singleMainWindow),
    listField("MimeType", &EntryModel::mimeType),
    listField("SortOrder", &EntryModel::sortOrder),
    textField("URL", &EntryModel::url, nullptr, EntryField::kLinkOnly),
    listField("Categories", &EntryModel::categories),
    listField("OnlyShowIn", &EntryModel::onlyShowIn),
    listField("NotShowIn", &EntryModel::notShowIn),
    textField("Version", &EntryModel::version),
    listField("Keywords", &EntryModel::keywords, &EntryModel::localKeywords),
};

// How many rows carry a translation: the size of a per-load table of ranks.
constexpr size_t translatableFieldCount()
{
    size_t count = 0;
    for (const EntryField& field : kEntryFields)
        count += field.translatable() ? 1 : 0;
    return count;
}

// The keys of an action group that the action holds, in save order. An
// action keeps its data to itself, so the rows reach it through its public
// accessors. Exactly one of text and list is set; a translatable text has
// localText, written as "key[language]" like the entry's own.
struct ActionField {
    using Action = VyxDesktopAction;
    const char* key;
    const std::string& (Action::*text)() const;
    void (Action::*setText)(const std::string&);
    const std::vector<std::string>& (Action::*list)() const;
    void (Action::*setList)(const std::vector<std::string>&);
    const std::string& (Action::*localText)() const;
    void (Action::*setLocalText)(const std::string&);
};

constexpr ActionField actionTextField(const char* key, const std::string& (VyxDesktopAction::*get)() const,
                                      void (VyxDesktopAction::*set)(const std::string&))
{
    return {key, get, set, nullptr, nullptr, nullptr, nullptr};
}

constexpr ActionField actionTranslatedField(const char* key, const std::string& (VyxDesktopAction::*get)() const,
                                            void (VyxDesktopAction::*set)(const std::string&),
                                            const std::string& (VyxDesktopAction::*getLocal)() const,
                                            void (VyxDesktopAction::*setLocal)(const std::string&))
{
    return {key, get, set, nullptr, nullptr, getLocal, setLocal};
}

constexpr ActionField actionListField(const char* key, const std::vector<std::string>& (VyxDesktopAction::*get)() const,
                                      void (VyxDesktopAction::*set)(const std::vector<std::string>&))
{
    return {key, nullptr, nullptr, get, set, nullptr, nullptr};
}

using ActionModel = VyxDesktopAction;

inline constexpr ActionField kActionFields[] = {
    actionTranslatedField("Name", &ActionModel::name, &ActionModel::setName, &ActionModel::localName,
                          &ActionModel::setLocalName),
    actionTranslatedField("Comment", &ActionModel::comment, &ActionModel::setComment, &ActionModel::localComment,
                          &ActionModel::setLocalComment),
    actionTranslatedField("Icon", &ActionModel::icon, &ActionModel::setIcon, &ActionModel::localIcon,
                          &ActionModel::setLocalIcon),
    actionTextField("Exec", &ActionModel::exec, &ActionModel::setExec),
    actionListField("OnlyShowIn", &ActionModel::onlyShowIn, &ActionModel::setOnlyShowIn),
    actionListField("NotShowIn", &ActionModel::notShowIn, &ActionModel::setNotShowIn),
};

}  // namespace Vyx::detail

#endif
