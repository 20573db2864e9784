// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "desktopentry/desktopentry_p.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <unordered_map>

using Vyx::detail::IniDocument;
using Vyx::detail::parseBool;
using Vyx::detail::splitList;

namespace {

const char kGroup[] = "Desktop Entry";

using Setter = void (*)(VyxDesktopEntryPrivate&, const char*);

// Untranslated keys of the model, compared exactly (case-sensitive).
const std::unordered_map<std::string, Setter>& plainKeys()
{
    static const std::unordered_map<std::string, Setter> keys = {
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
    const char* base;
    Setter set;
};

const TranslatedKey kTranslatedKeys[] = {
    {"Name", [](VyxDesktopEntryPrivate& d, const char* v) { d.localName = v; }},
    {"GenericName", [](VyxDesktopEntryPrivate& d, const char* v) { d.localGenericName = v; }},
    {"Comment", [](VyxDesktopEntryPrivate& d, const char* v) { d.localComment = v; }},
    {"Icon", [](VyxDesktopEntryPrivate& d, const char* v) { d.localIcon = v; }},
    {"Keywords", [](VyxDesktopEntryPrivate& d, const char* v) { d.localKeywords = splitList(v); }},
};

void loadActions(VyxDesktopEntryPrivate& d, const IniDocument& ini)
{
    for (const std::string& id : splitList(ini.value(kGroup, "Actions"))) {
        // A group named "X-Desktop Action" stands in for one without a name.
        std::string group = Vyx::concat("Desktop Action ", id);
        std::string name = ini.text(group.c_str(), "Name");
        if (name.empty()) {
            group = Vyx::concat("X-Desktop Action ", id);
            name = ini.text(group.c_str(), "Name");
            if (name.empty())
                continue;
        }
        VyxDesktopAction action(id);
        action.setName(name);
        if (d.hasLocale())
            action.setLocalName(d.localizedParameter(ini, group, "Name"));
        action.setComment(ini.text(group.c_str(), "Comment"));
        if (d.hasLocale())
            action.setLocalComment(d.localizedParameter(ini, group, "Comment"));
        action.setIcon(ini.text(group.c_str(), "Icon"));
        if (d.hasLocale())
            action.setLocalIcon(d.localizedParameter(ini, group, "Icon"));
        action.setExec(ini.text(group.c_str(), "Exec"));
        action.setOnlyShowIn(splitList(ini.value(group.c_str(), "OnlyShowIn")));
        action.setNotShowIn(splitList(ini.value(group.c_str(), "NotShowIn")));
        d.actions.push_back(std::move(action));
    }
}

}  // namespace

bool VyxDesktopEntryPrivate::load()
{
    if (loaded)
        resetAllLists();
    validity = 0;
    IniDocument ini;
    if (filePath.empty() || !ini.loadFile(filePath))
        return false;
    loadFrom(ini);
    return true;
}

void VyxDesktopEntryPrivate::loadFrom(const IniDocument& ini)
{
    name = ini.text(kGroup, "Name");
    // Several translations of one key: the earliest language of the list wins.
    int ranks[sizeof kTranslatedKeys / sizeof kTranslatedKeys[0]];
    std::fill(std::begin(ranks), std::end(ranks), INT32_MAX);
    const auto& plain = plainKeys();
    for (const auto& [key, value] : ini.entries(kGroup)) {
        if (Vyx::equal(key, "Name") || Vyx::equal(key, "Actions"))
            continue;
        if (std::strchr(key, '[')) {
            bool taken = false;
            for (size_t i = 0; i < std::size(kTranslatedKeys) && !taken; ++i) {
                int rank = languageRank(key, kTranslatedKeys[i].base);
                if (rank < 0)
                    continue;
                taken = true;
                if (rank < ranks[i]) {
                    ranks[i] = rank;
                    kTranslatedKeys[i].set(*this, value);
                }
            }
            if (taken)
                continue;
        } else if (auto it = plain.find(key); it != plain.end()) {
            it->second(*this, value);
            continue;
        }
        // Foreign keys and other languages' translations are kept for saving.
        unknowns.emplace_back(key, value);
    }
    loadActions(*this, ini);
    loaded = true;
    validity = 1;
}
