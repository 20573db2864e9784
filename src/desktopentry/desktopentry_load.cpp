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

using Vyx::detail::ActionField;
using Vyx::detail::EntryField;
using Vyx::detail::EntryFieldKind;
using Vyx::detail::EntryValue;
using Vyx::detail::IniField;
using Vyx::detail::IniReader;
using Vyx::detail::kActionFields;
using Vyx::detail::kEntryFields;
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
        TranslatedKeys made {};
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
        for (const ActionField& field : kActionFields) {
            const EntryValue value(ini.value(group, field.key));
            if (field.text)
                (action.*field.setText)(value.c_str());
            else
                (action.*field.setList)(splitList(value.c_str()));
        }
        if (d.hasLocale()) {
            // One walk over the group for the translations: the first
            // non-empty one in language order wins; keys and languages
            // compare ignoring case, as lookups in the file do.
            constexpr size_t kCount = std::size(kActionFields);
            const char* best[kCount] = {};
            size_t bestRank[kCount];
            std::fill(std::begin(bestRank), std::end(bestRank), SIZE_MAX);
            ini.forEach(group, [&](const IniField& field) {
                std::string_view base, language;
                if (!field.valueLength || !splitTranslated(field, &base, &language))
                    return;
                for (size_t f = 0; f < kCount; ++f) {
                    if (!kActionFields[f].localText || !Vyx::detail::sameIniName(base, kActionFields[f].key))
                        continue;
                    for (size_t rank = 0; rank < d.languages.size() && rank < bestRank[f]; ++rank) {
                        if (Vyx::detail::sameIniName(language, d.languages[rank])) {
                            bestRank[f] = rank;
                            best[f] = field.value;
                            break;
                        }
                    }
                    break;
                }
            });
            for (size_t f = 0; f < kCount; ++f) {
                if (kActionFields[f].localText)
                    (action.*kActionFields[f].setLocalText)(EntryValue(best[f]).c_str());
            }
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
