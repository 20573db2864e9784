// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "desktopentry/desktopentry_p.h"
#include "desktopentry/entryvalue_p.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string_view>
#include <unordered_map>

using Vyx::detail::EntryValue;
using Vyx::detail::IniField;
using Vyx::detail::IniReader;
using Vyx::detail::parseBool;
using Vyx::detail::splitList;

namespace {

const char kGroup[] = "Desktop Entry";

using Setter = void (*)(VyxDesktopEntryPrivate&, const char*);

// Untranslated keys of the model, compared exactly (case-sensitive). Keyed
// by views into the file's text: no string is built to look a key up.
const std::unordered_map<std::string_view, Setter>& plainKeys()
{
    static const std::unordered_map<std::string_view, Setter> keys = {
        {"GenericName", [](VyxDesktopEntryPrivate& d, const char* v) { d.genericName = v; }},
        {"Type", [](VyxDesktopEntryPrivate& d, const char* v) { d.type = v; }},
        {"TryExec", [](VyxDesktopEntryPrivate& d, const char* v) { d.tryExec = v; }},
        {"NoDisplay", [](VyxDesktopEntryPrivate& d, const char* v) { d.noDisplay = {true, parseBool(v)}; }},
        {"Comment", [](VyxDesktopEntryPrivate& d, const char* v) { d.comment = v; }},
        {"Exec", [](VyxDesktopEntryPrivate& d, const char* v) { d.exec = v; }},
        {"Icon", [](VyxDesktopEntryPrivate& d, const char* v) { d.icon = v; }},
        {"Hidden", [](VyxDesktopEntryPrivate& d, const char* v) { d.hidden = {true, parseBool(v)}; }},
        {"Path", [](VyxDesktopEntryPrivate& d, const char* v) { d.path = v; }},
        {"Terminal", [](VyxDesktopEntryPrivate& d, const char* v) { d.terminal = {true, parseBool(v)}; }},
        {"StartupNotify", [](VyxDesktopEntryPrivate& d, const char* v) { d.startupNotify = {true, parseBool(v)}; }},
        {"StartupWMClass", [](VyxDesktopEntryPrivate& d, const char* v) { d.startupWMClass = v; }},
        {"PrefersNonDefaultGPU",
         [](VyxDesktopEntryPrivate& d, const char* v) { d.prefersNonDefaultGPU = {true, parseBool(v)}; }},
        {"SingleMainWindow",
         [](VyxDesktopEntryPrivate& d, const char* v) { d.singleMainWindow = {true, parseBool(v)}; }},
        {"MimeType", [](VyxDesktopEntryPrivate& d, const char* v) { d.mimeType = splitList(v); }},
        {"SortOrder", [](VyxDesktopEntryPrivate& d, const char* v) { d.sortOrder = splitList(v); }},
        {"URL", [](VyxDesktopEntryPrivate& d, const char* v) { d.url = v; }},
        {"Categories", [](VyxDesktopEntryPrivate& d, const char* v) { d.categories = splitList(v); }},
        {"OnlyShowIn", [](VyxDesktopEntryPrivate& d, const char* v) { d.onlyShowIn = splitList(v); }},
        {"NotShowIn", [](VyxDesktopEntryPrivate& d, const char* v) { d.notShowIn = splitList(v); }},
        {"Version", [](VyxDesktopEntryPrivate& d, const char* v) { d.version = v; }},
        {"Keywords", [](VyxDesktopEntryPrivate& d, const char* v) { d.keywords = splitList(v); }},
    };
    return keys;
}

struct TranslatedKey {
    std::string_view base;
    Setter set;
};

const TranslatedKey kTranslatedKeys[] = {
    {"Name", [](VyxDesktopEntryPrivate& d, const char* v) { d.localName = v; }},
    {"GenericName", [](VyxDesktopEntryPrivate& d, const char* v) { d.localGenericName = v; }},
    {"Comment", [](VyxDesktopEntryPrivate& d, const char* v) { d.localComment = v; }},
    {"Icon", [](VyxDesktopEntryPrivate& d, const char* v) { d.localIcon = v; }},
    {"Keywords", [](VyxDesktopEntryPrivate& d, const char* v) { d.localKeywords = splitList(v); }},
};

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
    name = EntryValue(ini.value(main, "Name")).c_str();
    // Several translations of one key: the earliest language of the list wins.
    size_t ranks[std::size(kTranslatedKeys)];
    std::fill(std::begin(ranks), std::end(ranks), SIZE_MAX);
    const auto& plain = plainKeys();
    ini.forEach(main, [&](const IniField& field) {
        const std::string_view key(field.key, field.keyLength);
        if (key == "Name" || key == "Actions")
            return;
        std::string_view base, language;
        if (std::memchr(field.key, '[', field.keyLength)) {
            if (splitTranslated(field, &base, &language)) {
                for (size_t i = 0; i < std::size(kTranslatedKeys); ++i) {
                    if (base != kTranslatedKeys[i].base)
                        continue;
                    for (size_t rank = 0; rank < languages.size(); ++rank) {
                        if (language != languages[rank])
                            continue;
                        if (rank < ranks[i]) {
                            ranks[i] = rank;
                            kTranslatedKeys[i].set(*this, EntryValue(field.value).c_str());
                        }
                        return;
                    }
                    break;
                }
            }
        } else if (auto it = plain.find(key); it != plain.end()) {
            it->second(*this, EntryValue(field.value).c_str());
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
    loadActions(*this, ini, ini.value(main, "Actions"));
    loaded = true;
    validity = 1;
}
