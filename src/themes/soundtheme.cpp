// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "themes/soundtheme_p.h"

#include "core/diag_p.h"
#include "core/inireader_p.h"
#include "core/pathprobe_p.h"
#include "themes/themesettings_p.h"
#include "vyxdesktopentry.h"
#include "vyxdirs.h"
#include "vyxfileutils.h"
#include "vyxstrings.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <sys/stat.h>

namespace {

using Vyx::detail::isDirectory;

// Lookups serve ordinary two-channel output; other profiles (5.1, mono,
// headsets) have their own directories that this lookup passes by.
const char kProfile[] = "stereo";
// The fallback theme every sound theme ends in, installed or not.
const char kFallbackTheme[] = "freedesktop";
const char* const kExtensions[] = {".oga", ".ogg", ".wav"};

// The first existing dir + "/" + name + extension.
std::string probeExtensions(const std::string& dir, const std::string& name)
{
    return Vyx::detail::firstRegularFile(Vyx::concat(dir, '/', name), kExtensions, std::size(kExtensions));
}

std::string themeDirIn(const std::vector<std::string>& baseDirs, const std::string& themeName)
{
    // Theme and sound names are file names: a '/' or a ".." would lead out
    // of the sounds directories.
    if (!Vyx::detail::isPlainFileName(themeName))
        return std::string();
    for (const std::string& base : baseDirs) {
        std::string dir = Vyx::concat(base, '/', themeName);
        if (fileExists(dir + "/index.theme", false))
            return dir;
    }
    return std::string();
}

}  // namespace

bool VyxSoundThemePrivate::readIndex(const std::string& path, Index* index)
{
    Vyx::detail::IniReader ini;
    const char* main = mainSectionName();
    // An index without the group is some other kind of theme (icons
    // installed under the same name), not an empty sound theme.
    if (!ini.loadFile(path + "/index.theme") || ini.entries(main).empty())
        return false;
    index->name = ini.text(main, "Name");
    index->comment = ini.text(main, "Comment");
    index->inheritedNames = Vyx::split(ini.text(main, "Inherits").c_str(), ",;");
    for (const std::string& dir : Vyx::split(ini.text(main, "Directories").c_str(), ",;")) {
        // A directory that names no profile holds the ordinary stereo sounds.
        std::string profile = ini.text(dir.c_str(), "OutputProfile");
        index->directories.push_back({dir, profile.empty() ? std::string(kProfile) : profile});
    }
    return true;
}

void VyxSoundThemePrivate::addThemes(const std::string& root, std::vector<Searched>* into,
                                     std::vector<std::string>* seen) const
{
    // Depth-first with a stack of its own, each theme once: Inherits can
    // form cycles, and a long chain must not grow the call stack.
    std::vector<std::string> pending {root};
    while (!pending.empty()) {
        std::string themeName = std::move(pending.back());
        pending.pop_back();
        if (std::find(seen->begin(), seen->end(), themeName) != seen->end())
            continue;
        seen->push_back(themeName);
        Searched theme;
        theme.path = themeDirIn(baseDirs, themeName);
        if (theme.path.empty())
            continue;
        if (!readIndex(theme.path, &theme.index)) {
            Vyx::detail::diag(Vyx::detail::kLibraryPrefix, "failed to read %s/index.theme\n", theme.path.c_str());
            continue;
        }
        theme.themeName = themeName;
        // Every copy of the theme counts, so a user may add sounds to a
        // system theme from their own data directory.
        for (const VyxSoundThemeDir& dir : theme.index.directories) {
            if (dir.outputProfile != kProfile)
                continue;
            for (const std::string& base : baseDirs) {
                std::string path = Vyx::concat(base, '/', themeName, '/', dir.path);
                if (isDirectory(path))
                    theme.dirs.push_back(std::move(path));
            }
        }
        const std::vector<std::string>& parents = theme.index.inheritedNames;
        for (auto parent = parents.rbegin(); parent != parents.rend(); ++parent)
            pending.push_back(*parent);
        into->push_back(std::move(theme));
    }
}

std::string VyxSoundThemePrivate::searchThemes(const std::vector<Searched>& themes, const std::string& soundName) const
{
    for (const Searched& theme : themes) {
        for (const std::string& dir : theme.dirs) {
            for (const std::string& language : languages) {
                if (std::string file = probeExtensions(Vyx::concat(dir, '/', language), soundName); !file.empty())
                    return file;
            }
            if (std::string file = probeExtensions(dir, soundName); !file.empty())
                return file;
        }
    }
    return std::string();
}

VyxSoundTheme::VyxSoundTheme(std::string themeName) : d(new VyxSoundThemePrivate)
{
    d->themeName = themeName.empty() ? getCurrentThemeName() : std::move(themeName);
    d->languages = GetLangPref();
    d->baseDirs = GetSoundSearchDirs();
    std::vector<std::string> seen;
    d->addThemes(d->themeName, &d->chain, &seen);
    d->addThemes(kFallbackTheme, &d->fallback, &seen);
}

VyxSoundTheme::~VyxSoundTheme() = default;
VyxSoundTheme::VyxSoundTheme(VyxSoundTheme&& other) noexcept : d(std::move(other.d)) { }
VyxSoundTheme& VyxSoundTheme::operator=(VyxSoundTheme&& other) noexcept
{
    std::swap(d, other.d);
    return *this;
}

// The theme itself is the first one added, so it heads the chain whenever
// it is installed; otherwise nothing of its own (not even parents) is known.
bool VyxSoundTheme::isLoaded() const
{
    return !d->chain.empty();
}
std::string VyxSoundTheme::themeName() const
{
    return d->themeName;
}
std::string VyxSoundTheme::path() const
{
    return isLoaded() ? d->chain[0].path : std::string();
}
std::string VyxSoundTheme::name() const
{
    return isLoaded() ? d->chain[0].index.name : std::string();
}
std::string VyxSoundTheme::comment() const
{
    return isLoaded() ? d->chain[0].index.comment : std::string();
}
std::vector<std::string> VyxSoundTheme::inheritedNames() const
{
    return isLoaded() ? d->chain[0].index.inheritedNames : std::vector<std::string>();
}
const std::vector<VyxSoundThemeDir>& VyxSoundTheme::directories() const
{
    static const std::vector<VyxSoundThemeDir> none;
    return isLoaded() ? d->chain[0].index.directories : none;
}

std::vector<std::string> VyxSoundTheme::searchedThemes() const
{
    std::vector<std::string> names;
    for (const auto* themes : {&d->chain, &d->fallback}) {
        for (const VyxSoundThemePrivate::Searched& theme : *themes)
            names.push_back(theme.themeName);
    }
    return names;
}

std::string VyxSoundTheme::getSoundPath(const char* soundName) const
{
    if (!soundName || !Vyx::detail::isPlainFileName(soundName))
        return std::string();
    // "dialog-error-serious", "dialog-error", "dialog": the naming rule
    // makes each shorter name a more generic sound for the same event.
    std::vector<std::string> names {soundName};
    for (std::string shorter = soundName; Vyx::cutLastSection(shorter, '-') && !shorter.empty();)
        names.push_back(shorter);

    for (const auto* themes : {&d->chain, &d->fallback}) {
        for (const std::string& name : names) {
            if (std::string file = d->searchThemes(*themes, name); !file.empty())
                return file;
        }
    }
    for (const std::string& name : names) {
        for (const std::string& base : d->baseDirs) {
            if (std::string file = probeExtensions(base, name); !file.empty())
                return file;
        }
    }
    return std::string();
}

std::vector<std::string> VyxSoundTheme::GetSoundSearchDirs()
{
    std::vector<std::string> dirs;
    std::vector<std::string> candidates = xdgDataDirs("sounds");
    candidates.push_back(GetVyxDir(SoundsDir));
    for (std::string& dir : candidates) {
        if (!dir.empty() && isDirectory(dir))
            dirs.push_back(std::move(dir));
    }
    return dirs;
}

std::string VyxSoundTheme::findThemePath(const std::string& themeName)
{
    return themeDirIn(GetSoundSearchDirs(), themeName);
}

std::string VyxSoundTheme::getCurrentThemeName()
{
    std::string name = Vyx::detail::themeSetting("SoundTheme");
    return name.empty() ? kFallbackTheme : name;
}
