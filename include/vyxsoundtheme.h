// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_SOUNDTHEME_H
#define VYXCORE_SOUNDTHEME_H

/// \file
/// Sound themes: directories holding an index.theme with a "Sound Theme"
/// group, found under the "sounds" directory of every XDG data directory, and
/// the lookup of an event sound's name ("dialog-warning") to a file.
///
/// Threads: a VyxSoundTheme does not change after it is made, so any thread may
/// look up in it (only assigning to it needs it alone); the static functions
/// keep no state and may be called from any thread.

#include "vyxexport.h"

#include <memory>
#include <string>
#include <vector>

class VyxSoundThemePrivate;

/// One directory of a sound theme as its index lists it.
struct VyxSoundThemeDir {
    std::string path;  ///< relative to the theme, as listed in Directories ("stereo")
    std::string outputProfile;  ///< its OutputProfile; "stereo" when the key is missing or empty
};

/// A sound theme and the themes a lookup in it falls back to. The theme, its
/// inherited themes, the "freedesktop" theme and which of their directories
/// exist are read when the object is made (a theme installed later needs a
/// new object; sound files are looked for at each lookup). After that the
/// object does not change, so any thread may look up.
/// Problems never throw: an unknown or unreadable theme simply finds nothing
/// of its own, and lookups still reach "freedesktop" and the unthemed files.
class VYX_EXPORT VyxSoundTheme {
public:
    ///@{
    /// Reads the theme themeName (a directory name such as "freedesktop");
    /// an empty themeName means the current theme (getCurrentThemeName()).
    explicit VyxSoundTheme(std::string themeName);
    ~VyxSoundTheme();
    VyxSoundTheme(VyxSoundTheme&& other) noexcept;
    VyxSoundTheme& operator=(VyxSoundTheme&& other) noexcept;
    VyxSoundTheme(const VyxSoundTheme&) = delete;
    VyxSoundTheme& operator=(const VyxSoundTheme&) = delete;
    ///@}

    /// Whether the theme's own index.theme was found and read.
    bool isLoaded() const;
    /// The directory name the theme was asked for.
    std::string themeName() const;
    /// The directory holding the theme's index.theme; empty when not found.
    std::string path() const;
    ///@{
    /// Name and Comment of the index; empty when missing or not loaded.
    std::string name() const;
    std::string comment() const;
    ///@}
    /// The Inherits list as written (split at ',' and ';'); empty when none.
    std::vector<std::string> inheritedNames() const;
    /// The listed directories with their output profiles, in listed order,
    /// whether or not they exist; empty when not loaded.
    const std::vector<VyxSoundThemeDir>& directories() const;
    /// The installed themes a lookup goes through, in order: this theme,
    /// its inherited themes depth-first (each once, so cycles end), then
    /// "freedesktop" and what it inherits, when not already among them.
    /// Themes that are not installed are left out; empty when none is.
    std::vector<std::string> searchedThemes() const;

    /// The file of the event sound soundName for the "stereo" output
    /// profile. Each theme of searchedThemes() is asked in turn: its stereo
    /// directories under every sounds directory holding the theme, in each
    /// one first the subdirectory of every preferred language (GetLangPref)
    /// and then the directory itself, for soundName + ".oga", ".ogg", ".wav".
    /// The themes before "freedesktop" are asked for soundName, then for
    /// each shorter name made by cutting at the last '-' ("dialog-error-x",
    /// "dialog-error", "dialog"); then "freedesktop" is asked the same way;
    /// then the unthemed files directly in the sounds directories, by the
    /// same names. Empty when nothing is found, or when soundName is empty,
    /// "." or "..", or holds a '/'.
    std::string getSoundPath(const char* soundName) const;

    /// The directories that may hold sound themes and unthemed sounds, in
    /// search order, each only when it exists: $XDG_DATA_HOME/sounds (else
    /// ~/.local/share/sounds), each $XDG_DATA_DIRS element + "/sounds"
    /// (default /usr/local/share and /usr/share), and last the desktop's own
    /// GetVyxDir(SoundsDir), so that any installed theme overrides it. Like
    /// xdgDataDirs(), the user's directory is created when missing.
    static std::vector<std::string> GetSoundSearchDirs();
    /// The directory of the installed theme themeName: the first sounds
    /// directory whose themeName subdirectory holds an index.theme. Empty
    /// when there is none, or when themeName is empty, "." or "..", or holds a '/'.
    static std::string findThemePath(const std::string& themeName);
    /// The configured sound theme: the "SoundTheme" key of the group
    /// "Variables" in the same settings file as the icon theme's "IconTheme"
    /// ("current.themerc" plus the session's configuration suffix, in the
    /// user's theme-settings directory). "freedesktop" when none is set.
    static std::string getCurrentThemeName();

private:
    std::unique_ptr<VyxSoundThemePrivate> d;
};

#endif
