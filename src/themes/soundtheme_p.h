// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_SOUNDTHEME_P_H
#define VYXCORE_SOUNDTHEME_P_H

#include "vyxsoundtheme.h"

#include <string>
#include <vector>

class VyxSoundThemePrivate {
public:
    // What one theme's index.theme says.
    struct Index {
        std::string name;
        std::string comment;
        std::vector<std::string> inheritedNames;
        std::vector<VyxSoundThemeDir> directories;
    };
    // One theme a lookup asks: its directories of the output profile, as
    // absolute paths under every sounds directory that holds the theme.
    struct Searched {
        std::string themeName;
        std::string path;  // the directory holding its index.theme
        Index index;
        std::vector<std::string> dirs;
    };

    static const char* mainSectionName() { return "Sound Theme"; }
    // False when path + "/index.theme" cannot be read.
    static bool readIndex(const std::string& path, Index* index);

    // The file of soundName in the themes (empty for none).
    std::string searchThemes(const std::vector<Searched>& themes, const std::string& soundName) const;
    // Appends the installed theme root and the themes it inherits,
    // depth-first, skipping those already in *seen.
    void addThemes(const std::string& root, std::vector<Searched>* into, std::vector<std::string>* seen) const;

    std::string themeName;
    std::vector<std::string> languages;  // GetLangPref(), each a locale subdirectory
    std::vector<std::string> baseDirs;  // GetSoundSearchDirs()
    std::vector<Searched> chain;  // the theme (when installed) and its inherited themes
    std::vector<Searched> fallback;  // "freedesktop", unless the chain holds it
};

#endif
