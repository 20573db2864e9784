#include "themes/icontheme_p.h"

#include "vyxdirs.h"
#include "vyxfileutils.h"

#include <atomic>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace Vyx::detail {

bool hasImageExtension(const char* name)
{
    // ".jpeg" and ".tiff" are longer than three characters: such names are
    // searched as bare names.
    if (!fileNameExtension(name, 3))
        return false;
    const char* dot = std::strrchr(name, '.');
    for (const char* extension : {".png", ".svg", ".jpg", ".jpeg", ".xpm", ".ppm", ".pgm", ".tiff", ".eif"}) {
        if (std::strcmp(dot, extension) == 0)
            return true;
    }
    return false;
}

}  // namespace Vyx::detail

namespace {

using Vyx::detail::iconSwitches;


// The contexts that a directory of a theme stands for, by a fragment of its
// path.
const std::pair<const char*, const char*> kContexts[] = {
    {"/apps/", "Applications"},  {"/places/", "Places"},     {"/mimetypes/", "MimeTypes"},
    {"/actions/", "Actions"},    {"/status/", "Status"},     {"/devices/", "Devices"},
    {"/categories/", "Categories"}, {"/emblems/", "Emblems"}, {"/emotes/", "Emotes"},
    {"/intl/", "International"}, {"/filesystems/", "FileSystems"}, {"/animations/", "Animations"}};

// The file base + ".png" or base + ".svg" (base itself when it carries an
// image extension); empty when neither exists.
std::string existingImage(std::string base, const char* iconName)
{
    if (Vyx::detail::hasImageExtension(iconName))
        return fileExists(base, false) ? base : std::string();
    base += ".png";
    if (fileExists(base, false))
        return base;
    base.replace(base.size() - 4, 4, ".svg");
    return fileExists(base, false) ? base : std::string();
}

bool isMimeOrApplications(const char* context)
{
    return context && (std::strcmp(context, "MimeTypes") == 0 || std::strcmp(context, "Applications") == 0);
}

// One flag for both cache messages, for the whole process.
std::atomic<bool> g_cacheComplaintMade{false};

}  // namespace

bool VyxIconThemeSubdir::matchesSize(int size) const
{
    // Unlike the common convention, a directory without a Type serves no
    // size: kept on purpose.
    if (d->type == "Fixed")
        return size == d->size;
    if (d->type == "Scalable")
        return d->minSize <= size && size <= d->maxSize;
    if (d->type == "Threshold")
        return d->size - d->threshold <= size && size <= d->size + d->threshold;
    return false;
}

std::string VyxIconThemeSubdir::findIcon(const char* themePath, const char* iconName, int size, const char* context,
                                         const std::vector<std::string>& otherPaths) const
{
    if (context && *context && !d->context.empty() && d->context != context)
        return std::string();
    if (d->size > 0 && !matchesSize(size))
        return std::string();
    std::string found = existingImage(Vyx::concat(themePath, '/', d->path, '/', iconName), iconName);
    if (!found.empty())
        return found;
    for (const std::string& other : otherPaths) {
        std::string candidate = Vyx::concat(other, '/', d->path, '/', iconName);
        if (iconSwitches().debug)
            std::fprintf(stderr, "libvyxcore: check spreaded icon theme dir/path %s by pid %d\n", candidate.c_str(),
                         int(getpid()));
        found = existingImage(candidate, iconName);
        if (!found.empty())
            return found;
    }
    return std::string();
}

std::string VyxIconTheme::CheckFullPath(const char* name, std::string* context)
{
    if (context)
        context->clear();
    std::string found;
    if (!name)
        return found;
    if (name[0] == '/') {
        if (fileExists(name, false))
            found = name;
    } else {
        for (const std::string& dir : GetThemesSearchDirs()) {
            std::string candidate = dir + "/" + name;
            if (fileExists(candidate, false)) {
                found = candidate;
                break;
            }
        }
    }
    if (context && !found.empty()) {
        for (const auto& [fragment, name] : kContexts) {
            if (found.find(fragment) != std::string::npos) {
                *context = name;
                break;
            }
        }
    }
    return found;
}

std::string VyxIconThemePrivate::searchThemeCache(const std::string& searchName, const char* iconName, int size)
{
    if (!cacheReader || !cacheReader->isValid()) {
        if (!g_cacheComplaintMade.exchange(true))
            std::fprintf(stderr, "libvyxcore: invalid cache of %s\n", path.c_str());
        return std::string();
    }
    std::vector<const char*> dirs = cacheReader->lookup(searchName);
    if (!cacheReader->isValid()) {
        if (!g_cacheComplaintMade.exchange(true))
            std::fprintf(stderr, "libvyxcore: invalid read cache of %s, empty=%d\n", path.c_str(), dirs.empty() ? 1 : 0);
        return std::string();
    }
    const std::string prefix = std::to_string(size);
    const size_t nameLength = std::strlen(iconName);
    // A name of four characters or fewer, or one with a three-letter
    // extension, is taken as it is.
    const bool appendExtension = nameLength >= 5 && iconName[nameLength - 4] != '.';
    for (const char* dir : dirs) {
        // A plain prefix test: size 4 also picks the 48x48 directories.
        if (std::strncmp(dir, prefix.c_str(), prefix.size()) != 0)
            continue;
        std::string candidate = Vyx::concat(path, '/', dir, '/', searchName);
        if (appendExtension) {
            candidate += ".png";
            if (!fileExists(candidate, false))
                candidate.replace(candidate.size() - 4, 4, ".svg");
        }
        // Only the first directory of the size is tried.
        return fileExists(candidate, false) ? candidate : std::string();
    }
    return std::string();
}

std::string VyxIconThemePrivate::searchParents(const std::string& searchName, const char* iconName, int size,
                                               const char* iconContext)
{
    const Vyx::detail::IconSwitches& switches = iconSwitches();
    VyxIconTheme* hicolor = nullptr;
    std::string found;
    for (VyxIconTheme& parent : parents) {
        if (!inheritedBy.empty() && inheritedBy == parent.themeName())
            continue;
        if (switches.hicolorLast == 1 && Vyx::ciEqual(parent.name(), "hicolor")) {
            hicolor = &parent;
            continue;
        }
        if (switches.debug)
            std::fprintf(stderr,
                         "vyxcore: icon theme %s failed: getIcon(iconName=%s,iconSize=%d,iconContext=%s) - check in "
                         "inherited theme %s\n",
                         name.c_str(), iconName, size, iconContext ? iconContext : "", parent.name().c_str());
        found = parent.getIconPath(searchName.c_str(), size, iconContext);
        if (found.empty())
            continue;
        // An answer from hicolor through another parent may be bettered by
        // a later parent's own icon.
        if (switches.hicolorLast != 1 || parents.size() <= 1 || !Vyx::ciContains(found, "/hicolor/"))
            return found;
    }
    // hicolor, kept for last, has the final word when it is a parent.
    if (hicolor)
        return hicolor->getIconPath(searchName.c_str(), size, iconContext);
    return found;
}

std::string VyxIconThemePrivate::searchPass(const std::string& searchName, const char* iconName, int iconSize,
                                            int size, const char* iconContext, bool generic)
{
    const Vyx::detail::IconSwitches& switches = iconSwitches();
    std::string found = searchThemeCache(searchName, iconName, size);
    if (!found.empty())
        return found;
    for (const VyxIconThemeSubdir& subdir : subdirs) {
        if (size != iconSize && subdir.size() != size)
            continue;
        if (generic && (isMimeOrApplications(iconContext) || isMimeOrApplications(subdir.context().c_str())))
            continue;
        found = subdir.findIcon(path.c_str(), searchName.c_str(), size, iconContext, otherPaths);
        // Without a context the second try would repeat a subset of the
        // first: skipped, with the same answer.
        if (found.empty() && switches.searchWithoutContext == 1 && iconContext && *iconContext)
            found = subdir.findIcon(path.c_str(), searchName.c_str(), size, nullptr, {});
        if (!found.empty())
            return found;
    }
    found = searchParents(searchName, iconName, size, iconContext);
    if (found.empty() && switches.debug)
        std::fprintf(stderr, "vyxcore: icon theme %s error: getIcon(iconName=%s,iconSize=%d,iconContext=%s)\n",
                     name.c_str(), iconName, size, iconContext ? iconContext : "");
    return found;
}

std::string VyxIconTheme::getIconPath(const char* iconName, int iconSize, const char* iconContext)
{
    if (!iconName || !*iconName)
        return std::string();
    const Vyx::detail::IconSwitches& switches = iconSwitches();
    int size = iconSize;
    if (size < 1) {
        size = 32;
        if (switches.debug)
            std::fprintf(stderr,
                         "vyxcore: icon theme %s error: getIcon(%s,...) with undefined size requested, 32 will be used\n",
                         d->themeName.c_str(), iconName);
    }
    if (std::strchr(iconName, '/'))
        return CheckFullPath(iconName, nullptr);
    if (Vyx::detail::hasImageExtension(iconName)) {
        std::string found = CheckFullPath(iconName, nullptr);
        if (!found.empty())
            return found;
        std::string bare = iconName;
        if (Vyx::cutLastSection(bare, '.')) {
            found = getIconPath(bare.c_str(), size, iconContext);
            if (!found.empty())
                return found;
        }
    }

    std::string searchName = iconName;
    if (d->loadState == 65535)
        load();
    if (!isLoaded())
        return std::string();
    if (d->path.empty())
        d->path = findThemePath(d->themeName);
    if (d->path.empty())
        return std::string();

    bool generic = false;
    std::string key, found;
    while (true) {
        key = Vyx::concat(searchName, '-', iconSize >= 1 ? iconSize : size, '-', iconContext ? iconContext : "");
        {
            std::lock_guard<std::mutex> lock(d->iconCacheMutex);
            auto cached = d->iconCache.find(key);
            if (cached != d->iconCache.end()) {
                // A remembered file that has gone is not searched again.
                return !cached->second.empty() && fileExists(cached->second, false) ? cached->second : std::string();
            }
        }
        found = d->searchPass(searchName, iconName, iconSize, size, iconContext, generic);
        if (!found.empty())
            break;
        // The product's own themes are never searched at a bigger size.
        if (switches.searchBigger == 1 && !Vyx::startsWith(d->themeName, "vyx") && size < 128) {
            size = size < 48 ? 48 : 128;
            continue;
        }
        if (switches.searchGeneric == 1 && Vyx::cutLastSection(searchName, '-')) {
            size = iconSize < 1 ? 32 : iconSize;
            generic = true;
            continue;
        }
        break;
    }
    if (found.empty() && switches.searchOutOfThemes == 1) {
        const size_t length = std::strlen(iconName);
        const bool hasShortExtension =
            std::strchr(iconName, '.') && (length < 5 || iconName[length - 4] == '.');
        if (!hasShortExtension) {
            std::vector<std::string> dirs = {"/usr/share/pixmaps/", "/usr/share/icons/"};
            if (fileExists("/usr/local/share/icons", false))
                dirs.push_back("/usr/local/share/icons/");
            const std::string userIcons = GetVyxDir(HomeDir) + "/.local/share/icons";
            if (fileExists(userIcons, false))
                dirs.push_back(userIcons + "/");
            for (const std::string& dir : dirs) {
                for (const char* extension : {".png", ".svg", ".xpm"}) {
                    std::string candidate = Vyx::concat(dir, iconName, extension);
                    if (found.empty() && fileExists(candidate, false))
                        found = candidate;
                }
            }
        }
    }
    if (!found.empty()) {
        std::lock_guard<std::mutex> lock(d->iconCacheMutex);
        if (d->iconCache.size() > d->cacheSize)
            d->iconCache.clear();
        d->iconCache[key] = found;
    }
    return found;
}
