// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "desktopentry/desktopentry_p.h"
#include "desktopentry/entryfields_p.h"
#include "desktopentry/entryvalue_p.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string_view>
#include <unordered_map>

using Vyx::detail::EntryField;
using Vyx::detail::EntryFieldKind;
using Vyx::detail::EntryValue;
using Vyx::detail::kEntryFields;
using Vyx::detail::IniField;
using Vyx::detail::IniReader;
using Vyx::detail::parseBool;
using Vyx::detail::splitList;

namespace {

const char kGroup[] = "Desktop Entry";

// Untranslated keys of the model, compared exactly (case-sensitive). Keyed
// by views into the file's text: no string is built to look a key up.
const std::unordered_map<std::string_view, const EntryField*>& plainKeys()
{
    static const std::unordered_map<std::string_view, const EntryField*> keys = [] {
        std::unordered_map<std::string_view, const EntryField*> made;
        for (const EntryField& field : kEntryFields)
            made.emplace(field.key, &field);
        return made;
    }();
    return keys;
}

// The translatable rows in table order, each with its key as a view.
struct TranslatedKey {
    std::string_view base;
    const EntryField* field;
};

using TranslatedKeys = std::array<TranslatedKey, Vyx::detail::translatableFieldCount()>;

const TranslatedKeys& translatedKeys()
{
    static const TranslatedKeys keys = [] {
        TranslatedKeys made{};
        size_t next = 0;
        for (const EntryField& field : kEntryFields) {
            if (field.translatable())
                made[next++] = {field.key, &field};
        }
        return made;
    }();
    return keys;
}

void setField(VyxDesktopEntryPrivate& d, const EntryField& field, const char* value)
{
    switch (field.kind) {
    case EntryFieldKind::Text:
        d.*field.text = value;
        break;
    case EntryFieldKind::List:
        d.*field.list = splitList(value);
        break;
    case EntryFieldKind::Flag:
        d.*field.flag = {true, parseBool(value)};
        break;
    case EntryFieldKind::Actions:
        break;  // read with their groups, after the main group
    }
}

void setTranslation(VyxDesktopEntryPrivate& d, const EntryField& field, const char* value)
{
    if (field.localText)
        d.*field.localText = value;
    else
        d.*field.localList = splitList(value);
}

// A translated key "Base[language]" cut at its first '['; false for a key
// without one or not ending in ']'.
bool splitTranslated(const IniField& field, std::string_view* base, std::string_view* language)
{
    const char* open = static_cast<const char*>(std::memchr(field.key, '[', field.keyLength));
    if (!open || field.key[field.keyLength - 1] != ']')
        return false;
    *base = std::string_view(field.key, size_t(open - field.key));
    *language = std::string_view(open + 1, size_t(field.key + field.keyLength - 1 - (open + 1)));
    return true;
}

void loadActions(VyxDesktopEntryPrivate& d, const IniReader& ini, const char* ids)
{
    for (const std::string& id : splitList(ids)) {
        // A group named "X-Desktop Action" stands in for one without a name.
        int group = ini.group(Vyx::concat("Desktop Action ", id).c_str());
        const char* name = ini.value(group, "Name");
        if (!name || !*name) {
            group = ini.group(Vyx::concat("X-Desktop Action ", id).c_str());
            name = ini.value(group, "Name");
            if (!name || !*name)
                continue;
        }
        VyxDesktopAction action(id);
        action.setName(EntryValue(name).c_str());
        action.setComment(EntryValue(ini.value(group, "Comment")).c_str());
        action.setIcon(EntryValue(ini.value(group, "Icon")).c_str());
        action.setExec(EntryValue(ini.value(group, "Exec")).c_str());
        action.setOnlyShowIn(splitList(EntryValue(ini.value(group, "OnlyShowIn")).c_str()));
        action.setNotShowIn(splitList(EntryValue(ini.value(group, "NotShowIn")).c_str()));
        if (d.hasLocale()) {
            // One walk over the group for the translations: the first
            // non-empty one in language order wins; keys and languages
            // compare ignoring case, as lookups in the file do.
            static const std::string_view kBases[] = {"Name", "Comment", "Icon"};
            const char* best[3] = {};
            size_t bestRank[3] = {SIZE_MAX, SIZE_MAX, SIZE_MAX};
            ini.forEach(group, [&](const IniField& field) {
                std::string_view base, language;
                if (!field.valueLength || !splitTranslated(field, &base, &language))
                    return;
                for (size_t b = 0; b < 3; ++b) {
                    if (!Vyx::detail::sameIniName(base, kBases[b]))
                        continue;
                    for (size_t rank = 0; rank < d.languages.size() && rank < bestRank[b]; ++rank) {
                        if (Vyx::detail::sameIniName(language, d.languages[rank])) {
                            bestRank[b] = rank;
                            best[b] = field.value;
                            break;
                        }
                    }
                    break;
                }
            });
            action.setLocalName(EntryValue(best[0]).c_str());
            action.setLocalComment(EntryValue(best[1]).c_str());
            action.setLocalIcon(EntryValue(best[2]).c_str());
        }
        d.actions.push_back(std::move(action));
    }
}

}  // namespace

bool VyxDesktopEntryPrivate::load()
{
    if (loaded)
        resetAllLists();
    validity = 0;
    IniReader ini;
    if (filePath.empty() || !ini.loadFile(filePath))
        return false;
    loadFrom(ini);
    return true;
}

void VyxDesktopEntryPrivate::loadFrom(const IniReader& ini)
{
    std::string unread;
    const int main = ini.group(kGroup);
    for (const EntryField& field : kEntryFields) {
        if (field.rules & EntryField::kLookedUp)
            setField(*this, field, EntryValue(ini.value(main, field.key)).c_str());
    }
    // Several translations of one key: the earliest language of the list wins.
    const TranslatedKeys& translated = translatedKeys();
    size_t ranks[std::tuple_size<TranslatedKeys>::value];
    std::fill(std::begin(ranks), std::end(ranks), SIZE_MAX);
    const auto& plain = plainKeys();
    ini.forEach(main, [&](const IniField& field) {
        const std::string_view key(field.key, field.keyLength);
        std::string_view base, language;
        if (std::memchr(field.key, '[', field.keyLength)) {
            if (splitTranslated(field, &base, &language)) {
                for (size_t i = 0; i < translated.size(); ++i) {
                    if (base != translated[i].base)
                        continue;
                    for (size_t rank = 0; rank < languages.size(); ++rank) {
                        if (language != languages[rank])
                            continue;
                        if (rank < ranks[i]) {
                            ranks[i] = rank;
                            setTranslation(*this, *translated[i].field, EntryValue(field.value).c_str());
                        }
                        return;
                    }
                    break;
                }
            }
        } else if (auto it = plain.find(key); it != plain.end()) {
            // The looked-up keys are read already, the actions after.
            if (!(it->second->rules & EntryField::kLookedUp))
                setField(*this, *it->second, EntryValue(field.value).c_str());
            return;
        }
        // Foreign keys and other languages' translations are kept for saving.
        unread.append(field.key, field.keyLength + 1);
        const EntryValue value(field.value);
        unread.append(value.c_str(), value.size() + 1);
    });
    if (!unread.empty()) {
        std::lock_guard<std::mutex> lock(unknownsMutex);
        unreadUnknowns += unread;
    }
    for (const EntryField& field : kEntryFields) {
        if (field.kind == EntryFieldKind::Actions)
            loadActions(*this, ini, ini.value(main, field.key));
    }
    loaded = true;
    validity = 1;
}
