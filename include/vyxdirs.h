// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_DIRS_H
#define VYXCORE_DIRS_H

/// \file
/// Well-known directories of the user and of the system, and the XDG search
/// paths. Answers of GetVyxDir are computed once and cached process-wide.
///
/// Threads: every function may be called from any thread. GetVyxDir and
/// ResetVyxDirs share one mutex over the directory table; the XDG functions
/// keep no state but the atomic creation switch and the kiosk desktop of the
/// user-directory reader, decided once under a once-only guard. GetVyxDir's
/// reference is read after the lock is let go, by its callers and by the
/// library's own functions alike: copy an answer at once (an empty one is
/// filled by the next call, on any thread), and call ResetVyxDirs only while
/// no other thread uses the library.

#include "vyxexport.h"

#include <string>
#include <vector>

/// The numeric values are part of the interface: callers store and pass them.
enum VyxDir {
    WmDataDir = 0,  ///< "/usr/share/vyx-wm"
    TempDir = 1,  ///< $TMPDIR, else "/tmp"
    VyxHomeDir = 2,  ///< home + "/.vyx"; empty without a home
    ThemeDir = 3,  ///< vyx home + "/theme" (system theme dir in some kiosks)
    StartMenuDir = 4,  ///< vyx home + "/startmenu"
    ControlPanelDir = 5,  ///< vyx home + "/startmenu/controlpanel"
    DesktopDir = 6,  ///< XDG "DESKTOP", else home + "/Desktop"
    DocumentsDir = 7,  ///< XDG "DOCUMENTS", else home + "/Documents"
    TrashFilesDir = 8,  ///< $XDG_DATA_HOME/Trash/files, else home + "/.local/share/Trash/files"
    TempDirAlias = 9,  ///< the same string object as TempDir
    VyxDataDir = 10,  ///< "/usr/share/vyx"
    TranslationsDir = 11,  ///< "/usr/share/vyx/translations"
    HelpDir = 12,  ///< $VYXHELPDIR, else "/usr/share/doc/vyx"
    QtHelpDir = 13,  ///< $VYXHELPDIR + "/qthelp", else "/usr/share/doc/vyx/qthelp"
    SoundsDir = 14,  ///< "/usr/share/vyx-wm/sounds"
    ImagesDir = 15,  ///< "/usr/share/vyx-wm/images"
    KeymapsDir = 16,  ///< "/usr/share/vyx-wm/keymaps"
    KioskToolbarDir = 17,  ///< $VYX_KIOSK_TOOLBAR_DIR in a kiosk, else vyx home + "/toolbar"
    HomeDir = 18,  ///< $HOME, else "/home/" + $LOGNAME or $USER; else empty
    VideosDir = 19,  ///< XDG "VIDEOS"
    MusicDir = 20,  ///< XDG "MUSIC"
    PicturesDir = 21,  ///< XDG "PICTURES"
    DownloadDir = 22,  ///< XDG "DOWNLOAD"
    PublicShareDir = 23,  ///< XDG "PUBLICSHARE"
    TemplatesDir = 24,  ///< XDG "TEMPLATES"
    AutostartDir = 25,  ///< autostartDir()
    CacheDir = 26,  ///< $XDG_CACHE_HOME, else home + "/.cache"
    DecorationsDir = 27,  ///< "/usr/share/vyx-wm/decorations"
    SharedDesktopDir = 28,  ///< $VYX_SHARED_DESKTOP_DIR, else "/usr/share/applications/vyxdesktop"
    SharedStartMenuDir = 29  ///< $VYX_SHARED_STARTMENU_DIR, else "/usr/share/applications/vyxstartmenu"
};

/// The path of a well-known directory. The reference stays valid for the life
/// of the process, but ResetVyxDirs() may change its content from another
/// thread: copy it at once. Unknown values give a constant empty string; a
/// rule that yields nothing gives an empty string and is tried again next call.
VYX_EXPORT const std::string& GetVyxDir(VyxDir dir);
/// Another name of GetVyxDir, returning the same reference.
VYX_EXPORT const std::string& vyxGetPath(VyxDir dir);
/// Forgets every cached answer but SharedDesktopDir and SharedStartMenuDir, so
/// that the next GetVyxDir follows the current environment. Only while no
/// other thread uses the library: it empties strings they may be reading.
VYX_EXPORT void ResetVyxDirs();

///@{
/// The XDG configuration (data) search path, the user's directory first, each
/// with "/" + subdir appended when subdir is not null. The user's directory is
/// created (one level, mode 0700) when missing and left out if that fails.
VYX_EXPORT std::vector<std::string> xdgConfigDirs(const char* subdir);
VYX_EXPORT std::vector<std::string> xdgDataDirs(const char* subdir);
///@}
/// Whether xdgConfigDirs and xdgDataDirs create the user's missing directory
/// (true, the default) or leave it out of their answer. Process-wide; a
/// program that only reports what is there turns it off before its first
/// lookup, so that looking never changes the user's home directory.
VYX_EXPORT void setXdgUserDirCreation(bool create);
///@{
/// The first existing element of xdgConfigDirs(subdir) (xdgDataDirs); empty
/// when none exists.
VYX_EXPORT std::string findInXDGConfigDirs(const char* subdir);
VYX_EXPORT std::string findInXDGDataDirs(const char* subdir);
///@}
///@{
/// findInXDGConfigDirs("autostart") and xdgConfigDirs("autostart").
VYX_EXPORT std::string autostartDir();
VYX_EXPORT std::vector<std::string> autostartDirs();
///@}

/// The XDG user directory of a type ("DESKTOP", "DOCUMENTS", "DOWNLOAD",
/// "MUSIC", "PICTURES", "PUBLICSHARE", "TEMPLATES", "VIDEOS") from
/// "user-dirs.dirs". Without an entry: HOME + "/Desktop" for "DESKTOP", HOME
/// itself for other types, "/tmp" when HOME is unset. Empty only when the
/// reader returns nothing at all.
VYX_EXPORT std::string xdgUserDirLookup(const char* type);

extern "C" {
/// The C-style reader behind xdgUserDirLookup: the same answer in a buffer
/// from malloc() that the caller frees, or null when memory ran out.
VYX_EXPORT char* xdg_user_dir_lookup(const char* type);
}

#endif
