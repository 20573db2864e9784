#ifndef VYXCORE_ICONTHEME_P_H
#define VYXCORE_ICONTHEME_P_H

#include "vyxicontheme.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace Vyx::detail {
class IniDocument;

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

// The image extensions an icon name may carry, in the order they are
// recognised.
bool hasImageExtension(const char* name);
}  // namespace Vyx::detail

class VyxIconThemeSubdirPrivate {
public:
    int size = 0;
    int maxSize = 0;
    int minSize = 0;
    int threshold = 0;
    std::string context;
    std::string type;
    std::string path;
};

class VyxIconThemePrivate {
public:
    VyxIconThemePrivate();

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
    // Found icon paths by "name-size-context"; emptied whole when it
    // outgrows cacheSize.
    std::map<std::string, std::string> iconCache;
    std::mutex iconCacheMutex;
    std::unique_ptr<VyxIconCacheGtkReader> cacheReader;

    static const char* mainSectionName() { return "Icon Theme"; }
    bool hasLocale() const { return !languages.empty(); }
    // The first non-empty key[language] of section, in language order.
    std::string localizedParameter(const Vyx::detail::IniDocument& ini, const char* section, const char* key) const;

    // One search pass of getIconPath; empty when it finds nothing.
    std::string searchPass(const std::string& searchName, const char* iconName, int iconSize, int size,
                           const char* iconContext, bool generic);
    std::string searchThemeCache(const std::string& searchName, const char* iconName, int size);
    std::string searchParents(const std::string& searchName, const char* iconName, int size, const char* iconContext);
};

#endif
