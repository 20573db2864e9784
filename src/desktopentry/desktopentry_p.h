// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_DESKTOPENTRY_P_H
#define VYXCORE_DESKTOPENTRY_P_H

#include "core/inireader_p.h"
#include "vyxdesktopentry.h"

#include <cstdint>
#include <mutex>
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

    bool load();
    // Fills the model from a parsed file and marks it loaded.
    void loadFrom(const Vyx::detail::IniReader& ini);

    using UnknownList = std::vector<std::pair<std::string, std::string>>;
    // The keys the model does not hold, in file order, kept for saving. A
    // load copies them into one buffer and the pairs of strings are made on
    // first use: most loads never ask, and making them (every other
    // language's translations, two allocations each) was most of a load.
    const UnknownList& unknownList() const;
    UnknownList& unknownListToChange();
    // The value of the first unknown key named key, without making the list;
    // empty when there is none.
    std::string unknownValue(const char* key) const;
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
    // Read through unknownList() only.
    mutable UnknownList unknowns;
    mutable std::string unreadUnknowns;  // key NUL value NUL ..., not yet in unknowns
    mutable std::mutex unknownsMutex;
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
