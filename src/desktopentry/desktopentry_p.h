// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_DESKTOPENTRY_P_H
#define VYXCORE_DESKTOPENTRY_P_H

#include "core/ini_p.h"
#include "vyxdesktopentry.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

class VyxDesktopActionPrivate {
public:
    bool operator==(const VyxDesktopActionPrivate& other) const;

    std::string id, name, localName, comment, localComment, icon, localIcon, path, exec;
    std::vector<std::string> onlyShowIn, notShowIn;
};

// A boolean key that may be missing from the file.
struct OptionalBool {
    bool present = false;
    bool value = false;
    bool operator==(const OptionalBool& other) const { return present == other.present && value == other.value; }
};

class VyxDesktopEntryPrivate {
public:
    enum ReplaceFieldsMethod { CopyAll = 0, InheritMissing = 1, OverrideWithSet = 2 };

    VyxDesktopEntryPrivate();

    bool operator==(const VyxDesktopEntryPrivate& other) const;
    void copyFrom(const VyxDesktopEntryPrivate& other, ReplaceFieldsMethod method);
    void resetAllLists();

    bool hasLocale() const { return !languages.empty(); }
    // key + "[" + the first language + "]": where our translation is written.
    std::string localized(const char* key) const;
    // True when fullKey is baseKey + "[" + one of our languages + "]".
    bool isParameterLocalized(const char* fullKey, const char* baseKey) const;
    // The position in our language list of fullKey's language when it is
    // baseKey + "[" + language + "]"; -1 otherwise.
    int languageRank(const char* fullKey, const char* baseKey) const;
    // The first non-empty translation of key in group, by language order.
    std::string localizedParameter(const Vyx::detail::IniDocument& ini, const std::string& group,
                                   const char* key) const;

    bool load();
    // Fills the model from a parsed document and marks it loaded.
    void loadFrom(const Vyx::detail::IniDocument& ini);
    bool save(bool saveEmpty);

    std::string filePath;
    std::string name, localName, genericName, localGenericName, type, tryExec, comment, localComment, exec;
    std::vector<VyxDesktopAction> actions;
    std::string icon, localIcon, path, startupWMClass;
    std::vector<std::string> mimeType, sortOrder;
    std::string url;
    std::vector<std::string> categories, onlyShowIn, notShowIn;
    std::vector<std::string> languages;
    std::string version;
    std::vector<std::string> keywords, localKeywords;
    std::vector<std::pair<std::string, std::string>> unknowns;
    OptionalBool noDisplay, hidden, terminal, startupNotify, prefersNonDefaultGPU, singleMainWindow;
    bool loaded = false;
    int16_t validity = -1;  // -1 unknown, 0 invalid, 1 valid
};

namespace Vyx::detail {

// Lists in entry and theme files are read split at "," and ";".
inline std::vector<std::string> splitList(const char* value)
{
    return value ? Vyx::split(value, ",;") : std::vector<std::string>();
}

// The library's boolean rule: true when the value contains "rue", so "true"
// and "True" count and "TRUE", "1" and "yes" do not (kept on purpose).
inline bool parseBool(const char* value)
{
    return value && Vyx::contains(value, "rue");
}

}  // namespace Vyx::detail

#endif
