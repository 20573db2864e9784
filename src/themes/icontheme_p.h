// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_ICONTHEME_P_H
#define VYXCORE_ICONTHEME_P_H

#include "themes/iconfiles_p.h"
#include "themes/iconpathcache_p.h"
#include "vyxicontheme.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace Vyx::detail {
class IniReader;

// The VYX_ICON_ switches, read once per process when the first theme is
// made. Each is 1 or 0.
struct IconSwitches {
    int debug = 0;
    int searchGeneric = 1;
    int searchBigger = 1;
    int searchOutOfThemes = 1;
    int hicolorLast = 1;
    int searchWithoutContext = 1;
};
const IconSwitches& iconSwitches();

// Writes one line of the VYX_ICON_DEBUG trace, which tells what every
// lookup tries; nothing when the trace is off.
void iconTrace(const char* prefix, const char* format, ...) __attribute__((format(printf, 2, 3)));

// The image extensions an icon name may carry, in the order they are
// recognised.
bool hasImageExtension(const char* name);

// The contexts of icons in their fixed order, each with the fragment of a
// theme directory's path that stands for it.
struct IconContext {
    const char* fragment;
    const char* name;
};
extern const IconContext kIconContexts[12];
class IconProbe;
}  // namespace Vyx::detail

class VyxIconThemeSubdirPrivate {
public:
    // Type, compared once when it is set rather than on every lookup.
    enum class Kind { Fixed, Scalable, Threshold, None };
    Kind kind = Kind::None;
    int size = 0;
    int maxSize = 0;
    int minSize = 0;
    int threshold = 0;
    std::string context;
    std::string type;
    std::string path;
};

// Where a theme's lookups look, as ids into its file listing.
struct IconThemeLayout {
    explicit IconThemeLayout(std::shared_ptr<Vyx::detail::IconDirList> list) : files(list), list(std::move(list)) { }
    Vyx::detail::IconFiles files;
    std::shared_ptr<const Vyx::detail::IconDirList> list;
    // Subdir i under the theme's path is dirs[i * stride], under other
    // path k it is dirs[i * stride + 1 + k].
    size_t stride = 1;
    std::vector<uint32_t> dirs;
    // The directories searched outside every theme, in their order.
    std::vector<std::pair<std::string, uint32_t>> outOfThemes;
    uint32_t subdir(size_t index, size_t copy) const { return dirs[index * stride + copy]; }
    // The subdirs (by index) whose size rules admit size, in their order;
    // worked out once per size, as every pass at that size asks again.
    const std::vector<uint32_t>& serving(int size, const std::vector<VyxIconThemeSubdir>& subdirs);

private:
    static constexpr size_t kServingLists = 24;
    static constexpr int kEverySize = -1;  // no caller asks it: sizes below 1 become 32
    std::mutex m_servingMutex;
    std::vector<std::pair<int, std::unique_ptr<std::vector<uint32_t>>>> m_serving;
};

class VyxIconThemePrivate {
public:
    VyxIconThemePrivate();
    ~VyxIconThemePrivate();

    std::string themeName;
    std::string path;
    std::string inheritedBy;
    std::string name;
    std::string localName;
    std::string comment;
    std::string localComment;
    std::string exampleIcon;
    std::vector<std::string> inheritedNames;
    std::vector<VyxIconTheme> parents;
    std::vector<VyxIconThemeSubdir> subdirs;
    std::vector<std::string> otherPaths;
    bool hidden = false;
    std::vector<std::string> languages;
    uint16_t loadState = 65535;  // 65535 never loaded, 0 failed early, 1 loaded
    uint32_t cacheSize = 2000;
    // The answers of getIconPath, with their own mutex.
    Vyx::detail::IconPathCache answers {cacheSize};
    // The theme's icon-theme.cache, mapped once, opened at the end of load.
    std::unique_ptr<Vyx::detail::IconThemeCache> cache;
    std::shared_ptr<IconThemeLayout> layout;  // made by the first lookup
    std::mutex layoutMutex;

    static const char* mainSectionName() { return "Icon Theme"; }
    bool hasLocale() const { return !languages.empty(); }
    // The first non-empty key[language] of section, in language order.
    std::string localizedParameter(const Vyx::detail::IniReader& ini, int group, const char* key) const;

    std::shared_ptr<IconThemeLayout> fileLayout();
    // Forgets the layout after the path or the directories changed.
    void resetLayout();

    // The steps of getIconPath after its guard. Loads the theme when it
    // was never loaded; false when there is nothing to search.
    bool readyToSearch(VyxIconTheme& theme);
    // The answer of a lookup whose passes are remembered, with *known set;
    // *known false when the lookup must search.
    std::string recallPasses(const std::string& askedKey, const char* iconName, int iconSize, int size,
                             const char* iconContext, int64_t now, bool* known);
    // Runs the passes, remembers what they found and returns it.
    std::string search(std::string askedKey, const char* iconName, int iconSize, int size, const char* iconContext,
                       int64_t now);
    bool searchesBigger() const;
    // One search pass of getIconPath; empty when it finds nothing.
    std::string searchPass(Vyx::detail::IconProbe& probe, const std::string& searchName, const char* iconName,
                           int iconSize, int size, const char* iconContext, bool generic);
    std::string searchThemeCache(Vyx::detail::IconProbe& probe, const char* iconName, int size);
    std::string searchOutOfThemes(Vyx::detail::IconProbe& probe, const char* iconName);
    std::string searchParents(const std::string& searchName, const char* iconName, int size, const char* iconContext);
};

#endif
