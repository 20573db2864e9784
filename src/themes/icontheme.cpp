// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "themes/icontheme_p.h"

#include "core/diag_p.h"
#include "core/environment_p.h"
#include "core/ini_p.h"
#include "core/inireader_p.h"
#include "core/pathprobe_p.h"
#include "themes/themesettings_p.h"
#include "vyxdesktopentry.h"
#include "vyxdirs.h"
#include "vyxdisplay.h"
#include "vyxfileutils.h"
#include "vyxsystem.h"

#include <algorithm>
#include <cctype>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <unistd.h>

namespace Vyx::detail {

const IconSwitches& iconSwitches()
{
    // Read once, by whichever thread comes first; every lookup asks, so the
    // later calls cost one guarded load.
    static const IconSwitches switches = [] {
        IconSwitches read;
        auto set = [](const char* name) { return envValue(name) != nullptr; };
        read.debug = set("VYX_ICON_DEBUG") ? 1 : 0;
        read.searchGeneric = set("VYX_ICON_NO_SEARCH_GENERIC") ? 0 : 1;
        read.searchBigger = set("VYX_ICON_NO_SEARCH_BIGGER") ? 0 : 1;
        read.searchOutOfThemes = set("VYX_ICON_NO_SEARCH_OUT_OF_THEMES") ? 0 : 1;
        read.hicolorLast = set("VYX_ICON_SEARCH_HICOLOR_NOT_LAST") ? 0 : 1;
        read.searchWithoutContext = set("VYX_ICON_SEARCH_WITH_CONTEXT_ONLY") ? 0 : 1;
        return read;
    }();
    return switches;
}

void iconTrace(const char* prefix, const char* format, ...)
{
    if (!iconSwitches().debug)
        return;
    va_list arguments;
    va_start(arguments, format);
    vdiag(prefix, format, arguments);
    va_end(arguments);
}

}  // namespace Vyx::detail

namespace {

using Vyx::detail::diag;
using Vyx::detail::IniDocument;
using Vyx::detail::IniReader;
using Vyx::detail::kLibraryPrefix;
using Vyx::detail::settingsFile;
using Vyx::detail::themeSettingsFile;

// The capacity of a theme's path cache from VYX_ICON_THEME_CACHE_SIZE.
uint32_t cacheSizeFromEnvironment()
{
    uint32_t size = 2000;
    const char* value = Vyx::detail::envValue("VYX_ICON_THEME_CACHE_SIZE");
    if (!value)
        return size;
    if (std::isdigit(static_cast<unsigned char>(value[0]))) {
        size = static_cast<uint32_t>(std::atoi(value));
    } else if (Vyx::ciEqual(value, "auto")) {
        // Kibibytes as they stand: every machine above about 496 MiB gets 400.
        unsigned memory = GetMemTotal();
        size = memory < 63421 ? 20 : memory < 126841 ? 50 : memory < 253681 ? 100 : memory > 507760 ? 400 : 200;
    } else if (Vyx::ciEqual(value, "max")) {
        size = 5000;
    }
    diag(nullptr, "VYX_ICON_THEME_CACHE_SIZE=%s, cache size = %u\n", value, size);
    return size;
}

std::vector<std::string> splitList(const char* text)
{
    return Vyx::split(text ? text : "", ",;");
}

// The themes current() and currentTray() hand out. A theme replaced when
// the configured name changes is kept, not freed, so that a pointer another
// thread still holds stays valid; a name changes a few times in a session.
struct CurrentTheme {
    VyxIconTheme* theme = nullptr;  // null: none yet, or none configured
    std::vector<std::unique_ptr<VyxIconTheme>> made;  // every theme handed out, the current one last
};
std::mutex g_currentMutex;
CurrentTheme g_current, g_currentTray;  // guarded by g_currentMutex

VyxIconTheme* currentOf(CurrentTheme& slot, const std::string& name, bool forceLoad)
{
    std::lock_guard<std::mutex> lock(g_currentMutex);
    if (slot.theme && slot.theme->themeName() != name)
        slot.theme = nullptr;
    if (!slot.theme && !name.empty())
        slot.theme = slot.made.emplace_back(new VyxIconTheme(name, "", false)).get();
    if (forceLoad && slot.theme && !slot.theme->isLoaded())
        slot.theme->load();
    return slot.theme;
}

}  // namespace

// ---- VyxIconThemeSubdir -------------------------------------------------

VyxIconThemeSubdir::VyxIconThemeSubdir(std::string path) : d(new VyxIconThemeSubdirPrivate)
{
    d->path = std::move(path);
}
VyxIconThemeSubdir::~VyxIconThemeSubdir() = default;
VyxIconThemeSubdir::VyxIconThemeSubdir(VyxIconThemeSubdir&& other) noexcept : d(std::move(other.d)) { }
VyxIconThemeSubdir& VyxIconThemeSubdir::operator=(VyxIconThemeSubdir&& other) noexcept
{
    std::swap(d, other.d);
    return *this;
}

int VyxIconThemeSubdir::size() const
{
    return d->size;
}
void VyxIconThemeSubdir::setSize(int size)
{
    d->size = size;
}
int VyxIconThemeSubdir::maxSize() const
{
    return d->maxSize;
}
void VyxIconThemeSubdir::setMaxSize(int size)
{
    d->maxSize = size;
}
int VyxIconThemeSubdir::minSize() const
{
    return d->minSize;
}
void VyxIconThemeSubdir::setMinSize(int size)
{
    d->minSize = size;
}
int VyxIconThemeSubdir::threshold() const
{
    return d->threshold;
}
void VyxIconThemeSubdir::setThreshold(int threshold)
{
    d->threshold = threshold;
}
const std::string& VyxIconThemeSubdir::path() const
{
    return d->path;
}
void VyxIconThemeSubdir::setPath(std::string path)
{
    d->path = std::move(path);
}
const std::string& VyxIconThemeSubdir::context() const
{
    return d->context;
}
void VyxIconThemeSubdir::setContext(std::string context)
{
    d->context = std::move(context);
}
const std::string& VyxIconThemeSubdir::type() const
{
    return d->type;
}
void VyxIconThemeSubdir::setType(std::string type)
{
    using Kind = VyxIconThemeSubdirPrivate::Kind;
    d->type = std::move(type);
    d->kind = d->type == "Fixed"       ? Kind::Fixed
              : d->type == "Scalable"  ? Kind::Scalable
              : d->type == "Threshold" ? Kind::Threshold
                                       : Kind::None;
}

// ---- VyxIconTheme: the model --------------------------------------------

VyxIconThemePrivate::VyxIconThemePrivate() : languages(GetLangPref()), cacheSize(cacheSizeFromEnvironment()) { }

VyxIconThemePrivate::~VyxIconThemePrivate() = default;

std::string VyxIconThemePrivate::localizedParameter(const IniReader& ini, int group, const char* key) const
{
    for (const std::string& language : languages) {
        std::string localized = Vyx::concat(key, '[', language, ']');
        if (const char* value = ini.value(group, localized.c_str()); value && *value)
            return value;
    }
    return std::string();
}

VyxIconTheme::VyxIconTheme(std::string themeName, std::string inheritedBy, bool load)
{
    Vyx::detail::iconSwitches();
    d.reset(new VyxIconThemePrivate);
    d->themeName = themeName.empty() ? getCurrentThemeName() : std::move(themeName);
    d->inheritedBy = std::move(inheritedBy);
    if (load)
        this->load();
}

VyxIconTheme::~VyxIconTheme() = default;
VyxIconTheme::VyxIconTheme(VyxIconTheme&& other) noexcept : d(std::move(other.d)) { }
VyxIconTheme& VyxIconTheme::operator=(VyxIconTheme&& other) noexcept
{
    std::swap(d, other.d);
    return *this;
}

bool VyxIconTheme::isLoaded() const
{
    return d->loadState == 1;
}
std::string VyxIconTheme::path() const
{
    return d->path;
}
void VyxIconTheme::setPath(std::string path)
{
    d->path = std::move(path);
    d->resetLayout();
}
std::string VyxIconTheme::themeName() const
{
    return d->themeName;
}
void VyxIconTheme::setThemeName(std::string themeName)
{
    d->themeName = std::move(themeName);
}
std::string VyxIconTheme::name() const
{
    return d->name;
}
void VyxIconTheme::setName(std::string name)
{
    d->name = std::move(name);
}
std::string VyxIconTheme::comment() const
{
    return d->comment;
}
void VyxIconTheme::setComment(std::string comment)
{
    d->comment = std::move(comment);
}
std::string VyxIconTheme::localName() const
{
    return d->localName;
}
void VyxIconTheme::setLocalName(std::string name)
{
    d->localName = std::move(name);
}
std::string VyxIconTheme::localComment() const
{
    return d->localComment;
}
void VyxIconTheme::setLocalComment(std::string comment)
{
    d->localComment = std::move(comment);
}
bool VyxIconTheme::hidden() const
{
    return d->hidden;
}
void VyxIconTheme::setHidden(bool hidden)
{
    d->hidden = hidden;
}
std::string VyxIconTheme::exampleIcon() const
{
    return d->exampleIcon;
}
void VyxIconTheme::setExampleIcon(std::string icon)
{
    d->exampleIcon = std::move(icon);
}
std::vector<std::string> VyxIconTheme::inheritedNames() const
{
    return d->inheritedNames;
}
void VyxIconTheme::setInheritedNames(std::vector<std::string> names)
{
    d->inheritedNames = std::move(names);
}
const std::vector<VyxIconThemeSubdir>& VyxIconTheme::subdirs() const
{
    return d->subdirs;
}
void VyxIconTheme::setSubdirs(std::vector<VyxIconThemeSubdir> subdirs)
{
    d->subdirs = std::move(subdirs);
    d->resetLayout();
}
const std::vector<VyxIconTheme>& VyxIconTheme::parents() const
{
    return d->parents;
}
const std::vector<std::string>& VyxIconTheme::otherPaths() const
{
    return d->otherPaths;
}
bool VyxIconTheme::hasValidCache() const
{
    return d->cache && d->cache->isValid();
}

bool VyxIconTheme::load()
{
    if (isLoaded())
        return true;
    bool result = true;
    if (d->path.empty())
        d->path = findThemePath(d->themeName);
    if (d->path.empty()) {
        diag(kLibraryPrefix, "failed to load %s\n", d->path.c_str());
        return false;
    }
    // Themes that inherit each other through others (A, B, then A again)
    // would load for ever: a theme already being loaded on this thread is
    // not loaded again as a parent.
    thread_local std::vector<std::string> loading;
    if (std::find(loading.begin(), loading.end(), d->path) != loading.end())
        return false;
    struct Loading {
        std::vector<std::string>& stack;
        ~Loading() { stack.pop_back(); }
    } guard {loading};
    loading.push_back(d->path);

    const std::string indexFile = d->path + "/index.theme";
    IniReader ini;
    if (!ini.loadFile(indexFile)) {
        diag(kLibraryPrefix, "failed to read %s\n", indexFile.c_str());
        return false;
    }
    const int main = ini.group(VyxIconThemePrivate::mainSectionName());
    const char* name = ini.value(main, "Name");
    if (!name || !*name) {
        diag(kLibraryPrefix, "failed to read name of %s\n", indexFile.c_str());
        result = false;
    } else {
        d->name = name;
    }
    if (d->hasLocale()) {
        if (std::string local = d->localizedParameter(ini, main, "Name"); !local.empty())
            d->localName = local;
    }
    auto text = [&](const char* key) {
        const char* value = ini.value(main, key);
        return std::string(value ? value : "");
    };
    d->comment = text("Comment");
    if (d->hasLocale()) {
        if (std::string local = d->localizedParameter(ini, main, "Comment"); !local.empty())
            d->localComment = local;
    }

    d->inheritedNames = splitList(ini.value(main, "Inherits"));
    if (d->inheritedNames.empty() && !Vyx::ciEqual(d->name, "hicolor") && !Vyx::endsWith(d->path, "/hicolor"))
        d->inheritedNames.push_back("hicolor");
    for (const std::string& inherited : d->inheritedNames) {
        // A parent never loads the theme that inherits it: that would loop.
        if (!d->inheritedBy.empty() && Vyx::ciEqual(d->inheritedBy, inherited))
            continue;
        VyxIconTheme parent(inherited, d->name, false);
        parent.load();
        if (parent.isLoaded())
            d->parents.push_back(std::move(parent));
    }

    // Kept on purpose: only values holding "rue" count, so "TRUE" does not.
    d->hidden = Vyx::contains(text("Hidden").c_str(), "rue");
    d->exampleIcon = text("Example");

    // The cache's checks look at every directory it lists: what they saw
    // spares those of the index a second look.
    d->cache = std::make_unique<Vyx::detail::IconThemeCache>(d->path);
    std::vector<Vyx::detail::SeenDirectory> seen = d->cache->directories();
    std::sort(seen.begin(), seen.end());
    std::optional<Vyx::detail::DirectoryProbe> probe;
    auto isDirectory = [&](const std::string& dir) {
        auto known = std::lower_bound(seen.begin(), seen.end(), Vyx::detail::SeenDirectory(dir, false));
        if (known != seen.end() && known->first == dir)
            return known->second;
        if (!probe)
            probe.emplace(d->path);
        return probe->isDirectory(dir);
    };
    for (const std::string& dir : splitList(ini.value(main, "Directories"))) {
        if (!isDirectory(dir))
            continue;
        VyxIconThemeSubdir subdir(dir);
        // One walk over the section's keys rather than a lookup for each:
        // a theme like hicolor has hundreds of sections.
        enum { kSize, kContext, kType, kMaxSize, kMinSize, kThreshold, kKeys };
        static const char* const kNames[kKeys] = {"Size", "Context", "Type", "MaxSize", "MinSize", "Threshold"};
        const char* values[kKeys] = {};
        ini.forEach(ini.group(dir.c_str()), [&](const Vyx::detail::IniField& field) {
            for (int k = 0; k < kKeys; ++k) {
                if (Vyx::detail::sameIniName({field.key, field.keyLength}, kNames[k])) {
                    values[k] = field.value;
                    break;
                }
            }
        });
        auto value = [&](int key, const char* fallback) { return values[key] ? values[key] : fallback; };
        const char* size = value(kSize, "0");
        subdir.setSize(std::atoi(size));
        if (size[0] == '0') {
            int width = 0, height = 0;
            if (std::sscanf(dir.c_str(), "%dx%d", &width, &height) == 2)
                subdir.setSize(width);
            else
                result = false;
        }
        subdir.setContext(value(kContext, ""));
        subdir.setType(value(kType, ""));
        const char* maxSize = value(kMaxSize, "0");
        const char* minSize = value(kMinSize, "0");
        subdir.setMaxSize(maxSize[0] == '0' ? subdir.size() : std::atoi(maxSize));
        subdir.setMinSize(minSize[0] == '0' ? subdir.size() : std::atoi(minSize));
        subdir.setThreshold(std::atoi(value(kThreshold, "2")));
        d->subdirs.push_back(std::move(subdir));
    }

    const std::string base = Vyx::lastSection(d->path, '/');
    for (const std::string& dir : GetThemesSearchDirs()) {
        std::string candidate = dir + "/" + base;
        if (candidate != d->path)
            d->otherPaths.push_back(candidate);
    }
    d->loadState = 1;
    return result;
}

bool VyxIconTheme::save()
{
    if (d->path.empty())
        return false;
    const std::string indexFile = d->path + "/index.theme";
    // Keys we do not model (localized names, vendor keys) survive a save.
    IniDocument ini;
    ini.loadFile(indexFile);
    const char* main = VyxIconThemePrivate::mainSectionName();
    auto join = [](const std::vector<std::string>& items) {
        std::string text;
        for (const std::string& item : items)
            text += (text.empty() ? "" : ",") + item;
        return text;
    };
    std::vector<std::string> dirs;
    for (const VyxIconThemeSubdir& subdir : d->subdirs)
        dirs.push_back(subdir.path());
    bool ok = ini.set(main, "Name", d->name) && ini.set(main, "Comment", d->comment) &&
              ini.set(main, "Inherits", join(d->inheritedNames)) &&
              ini.set(main, "Hidden", d->hidden ? "true" : "false") && ini.set(main, "Example", d->exampleIcon) &&
              ini.set(main, "Directories", join(dirs));
    for (const VyxIconThemeSubdir& subdir : d->subdirs) {
        const char* section = subdir.path().c_str();
        ok = ok && ini.set(section, "Size", std::to_string(subdir.size())) &&
             ini.set(section, "Context", subdir.context()) && ini.set(section, "Type", subdir.type()) &&
             ini.set(section, "MaxSize", std::to_string(subdir.maxSize())) &&
             ini.set(section, "MinSize", std::to_string(subdir.minSize())) &&
             ini.set(section, "Threshold", std::to_string(subdir.threshold()));
    }
    return ok && ini.saveAtomically(indexFile);
}

// ---- The installed themes and the current ones --------------------------

std::vector<std::string> VyxIconTheme::GetThemesSearchDirs()
{
    static std::vector<std::string> dirs;
    static std::once_flag once;
    std::call_once(once, [] {
        auto add = [](const std::string& dir) {
            if (fileExists(dir, false))
                dirs.push_back(dir);
        };
        const std::string& home = GetVyxDir(HomeDir);
        if (!home.empty())
            add(home + "/.icons");
        // Kept on purpose: "/.icons" under a data home that is set, not "/icons".
        const bool dataHomeSet = Vyx::detail::envValue("XDG_DATA_HOME") != nullptr;
        add(Vyx::detail::userDataHome() + (dataHomeSet ? "/.icons" : "/icons"));
        for (const std::string& dir : Vyx::detail::xdgDataDirList())
            add(dir + "/icons");
        // The two system directories come again after a list that was set,
        // so a theme there is found (and counted) in both places; without
        // a list they are the list.
        if (Vyx::detail::envValue("XDG_DATA_DIRS")) {
            add("/usr/local/share/icons");
            add("/usr/share/icons");
        }
        add("/usr/share/pixmaps");
    });
    return dirs;
}

std::vector<std::string> VyxIconTheme::GetThemesIndexFiles()
{
    static std::vector<std::string> files;
    static std::once_flag once;
    std::call_once(once, [] {
        for (const std::string& dir : GetThemesSearchDirs()) {
            std::vector<std::string> found;
            GetFileList(&found, dir.c_str(), 1, "index.theme", Vyx::tagged_bool<FilesOnly_tag>(true));
            // Only a theme directory's own index: one level down, no deeper.
            for (const std::string& file : found) {
                if (file.compare(0, dir.size() + 1, dir + "/") == 0 &&
                    file.find('/', dir.size() + 1) != std::string::npos && fileExists(file, false))
                    files.push_back(file);
            }
        }
    });
    return files;
}

std::vector<std::string> VyxIconTheme::getThemesNames()
{
    std::vector<std::string> names;
    for (const std::string& file : GetThemesIndexFiles()) {
        IniReader ini;
        if (!ini.loadFile(file))
            continue;
        const char* dirs = ini.value(VyxIconThemePrivate::mainSectionName(), "Directories");
        if (!dirs || !*dirs)
            continue;
        std::string dir = file.substr(0, file.rfind('/'));
        std::string name = Vyx::lastSection(dir, '/');
        if (!name.empty())
            names.push_back(name);
    }
    return names;
}

std::string VyxIconTheme::findThemePath(const std::string& themeName)
{
    static std::mutex mutex;
    static std::vector<std::string> files;
    static bool filled = false;
    std::lock_guard<std::mutex> lock(mutex);
    if (!filled) {
        files = GetThemesIndexFiles();
        filled = true;
    }
    for (const std::string& file : files) {
        std::string dir = file.substr(0, file.rfind('/'));
        if (Vyx::lastSection(dir, '/') == themeName)
            return dir;
    }
    return std::string();
}

std::string VyxIconTheme::getCurrentThemeName()
{
    std::string name = Vyx::detail::themeSetting("IconTheme");
    return name.empty() ? "vyx-orvel" : name;
}

std::string VyxIconTheme::getCurrentTrayThemeName(const std::string& colorHint)
{
    std::string file = themeSettingsFile();
    if (file.empty())
        return std::string();
    IniReader ini;
    if (!ini.loadFile(file)) {
        diag(kLibraryPrefix, "can't read vyx-wm settings '%s'!\n", file.c_str());
        return std::string();
    }
    std::string use = ini.text("Variables", "UseTrayIconTheme");
    if (use.empty() || Vyx::ciEqual(use, "false"))
        return std::string();
    if (!Vyx::ciEqual(use, "auto") && !Vyx::ciEqual(use, "true"))
        return use;
    std::string color = colorHint;
    if (color.empty()) {
        std::string panel = ini.text("Variables", "TaskbarColor");
        if (Vyx::ciEqual(panel, "PrimaryDarkColor")) {
            std::string paletteFile = settingsFile("paletterc");
            IniReader palette;
            if (palette.loadFile(paletteFile)) {
                const char* primary = palette.value("Variables", "PrimaryColor");
                panel = primary ? primary : "#5682a3";
            } else {
                diag(kLibraryPrefix, "can't read vyx-wm settings '%s'!\n", paletteFile.c_str());
                panel.clear();
            }
        }
        if (!panel.empty())
            color = GetPrimaryDarkColor(panel, true);
    }
    // A dark panel, on which text is white, gets the white icon set.
    if (color.empty() || Vyx::ciEqual(textColorFor(color), "#FFFFFF"))
        return "vyx-orvel-flat-white";
    return "vyx-orvel-flat-black";
}

VyxIconTheme* VyxIconTheme::current(Vyx::tagged_bool<ForceLoad_tag> forceLoad)
{
    return currentOf(g_current, getCurrentThemeName(), bool(forceLoad));
}

VyxIconTheme* VyxIconTheme::currentTray(Vyx::tagged_bool<ForceLoad_tag> forceLoad, const std::string& colorHint)
{
    return currentOf(g_currentTray, getCurrentTrayThemeName(colorHint), bool(forceLoad));
}

VyxIconTheme& VyxIconTheme::instance()
{
    static VyxIconTheme theme("", "", true);
    return theme;
}
