// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_ICONTHEME_H
#define VYXCORE_ICONTHEME_H

/// \file
/// Icon themes: the theme directories installed on the system, their
/// index.theme model, icon lookup by name and size, and the precomputed index
/// ("icon-theme.cache") that tells which of a theme's directories hold an
/// icon without probing the file system.
///
/// Threads: getIconPath and the other lookups may be called from several
/// threads at once on one loaded theme (each theme's path cache has its own
/// mutex, held only around the cache); load(), save() and the setters need
/// the theme to themselves, and so does the first lookup on a theme made
/// without loading, which loads it. The static functions are safe from any
/// thread: the installed-theme lists are built once under a once-only guard
/// and findThemePath's copy has its own mutex. current() and currentTray() are
/// safe from any thread too; the theme they return belongs to the library,
/// and once the configured name changes a later call answers a new theme.
/// The old one is kept, not freed, so a pointer held elsewhere stays valid
/// (it just keeps answering for the old name). instance()
/// is built once, loaded, and lives until exit. The cursor functions follow
/// vyxdisplay.h for the Display and the X resources file.

#include "vyxexport.h"
#include "vyxstrings.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// Xlib's display, declared as Xlib declares it so that this header does not
/// pull in Xlib and its macros.
typedef struct _XDisplay Display;

namespace Vyx::detail {
class MappedFile;
}

class VyxIconThemePrivate;
class VyxIconThemeSubdirPrivate;

/// One size directory of a theme ("48x48/apps") with its index.theme keys.
/// Movable, not copyable. Const members may be called from several threads
/// at once; the setters need the object to themselves.
class VYX_EXPORT VyxIconThemeSubdir {
public:
    /// A directory named path (relative to its theme) with no keys yet.
    explicit VyxIconThemeSubdir(std::string path);
    ///@{
    /// Movable, not copyable.
    ~VyxIconThemeSubdir();
    VyxIconThemeSubdir(VyxIconThemeSubdir&& other) noexcept;
    VyxIconThemeSubdir& operator=(VyxIconThemeSubdir&& other) noexcept;
    VyxIconThemeSubdir(const VyxIconThemeSubdir&) = delete;
    VyxIconThemeSubdir& operator=(const VyxIconThemeSubdir&) = delete;
    ///@}

    ///@{
    /// The directory's index.theme keys Size, MaxSize, MinSize and Threshold
    /// (0 when unset), Context and Type (empty when unset), and its path.
    int size() const;
    void setSize(int size);
    int maxSize() const;
    void setMaxSize(int size);
    int minSize() const;
    void setMinSize(int size);
    int threshold() const;
    void setThreshold(int threshold);
    const std::string& path() const;  ///< relative to the theme, as listed in Directories
    void setPath(std::string path);
    const std::string& context() const;
    void setContext(std::string context);
    const std::string& type() const;  ///< "Fixed", "Scalable", "Threshold"
    void setType(std::string type);
    ///@}

    /// Whether icons of this directory serve size, by its Type; a directory
    /// of any other Type (none included) serves no size.
    bool matchesSize(int size) const;
    /// The file of iconName in this directory of themePath, or else of the
    /// same theme installed under otherPaths: name.png, then name.svg (a
    /// name with an image extension as it is). Empty when the directory's
    /// context or size rules it out or no file exists.
    std::string findIcon(const char* themePath, const char* iconName, int size, const char* context,
                         const std::vector<std::string>& otherPaths) const;

private:
    std::unique_ptr<VyxIconThemeSubdirPrivate> d;
};

/// An icon theme: a directory with an index.theme, its inherited themes, its
/// size directories, its icon-theme.cache and a cache of the paths it has
/// found. Loading reads the parents too, eagerly. Problems are reported on
/// standard error and as false results; nothing throws. Once loaded, any
/// thread may look up; loading and changing need the theme to themselves.
class VYX_EXPORT VyxIconTheme {
public:
    /// Which names of a MIME type an icon search uses: 1 its own icon name,
    /// 2 its generic one, other values the own name and else the generic one.
    enum SearchIconNameType { MimeIconName = 1, MimeGenericIconName = 2, MimeIconNameOrGeneric = 3 };

    /// An empty themeName means the current theme. inheritedBy is the Name
    /// of the theme that inherits this one (a parent never loads its child
    /// again); load reads the theme at once.
    VyxIconTheme(std::string themeName, std::string inheritedBy, bool load);
    ///@{
    /// Movable, not copyable.
    ~VyxIconTheme();
    VyxIconTheme(VyxIconTheme&& other) noexcept;
    VyxIconTheme& operator=(VyxIconTheme&& other) noexcept;
    VyxIconTheme(const VyxIconTheme&) = delete;
    VyxIconTheme& operator=(const VyxIconTheme&) = delete;
    ///@}

    /// Reads the theme and its parents. True at once when loaded; false when
    /// it cannot be found or read, and also when it was read but lacks a Name
    /// or has a size directory without a size (it then counts as loaded).
    bool load();
    /// Writes the model to path + "/index.theme", replacing the file
    /// atomically; false when there is no path or it cannot be written.
    bool save();
    /// Whether the theme was read (see load()).
    bool isLoaded() const;

    ///@{
    /// The model of index.theme: the theme's directory (path), its directory
    /// name (themeName), Name, Comment and their translations, Hidden,
    /// Example, Inherits and the size directories. Empty (false) when unset.
    std::string path() const;
    void setPath(std::string path);
    std::string themeName() const;
    void setThemeName(std::string themeName);
    std::string name() const;
    void setName(std::string name);
    std::string comment() const;
    void setComment(std::string comment);
    std::string localName() const;
    void setLocalName(std::string name);
    std::string localComment() const;
    void setLocalComment(std::string comment);
    bool hidden() const;
    void setHidden(bool hidden);
    std::string exampleIcon() const;
    void setExampleIcon(std::string icon);
    std::vector<std::string> inheritedNames() const;
    void setInheritedNames(std::vector<std::string> names);
    const std::vector<VyxIconThemeSubdir>& subdirs() const;
    void setSubdirs(std::vector<VyxIconThemeSubdir> subdirs);
    ///@}
    /// The inherited themes that loaded, in Inherits order.
    const std::vector<VyxIconTheme>& parents() const;
    /// The same theme directory name under the other search directories.
    const std::vector<std::string>& otherPaths() const;
    /// Whether the theme's icon-theme.cache is open and sound.
    bool hasValidCache() const;

    // ---- Icons for MIME types, files, URLs and names ------------------

    ///@{
    /// The MIME database's icon name of mime (type 1), its generic icon
    /// name (type 2), or the first and else the second (other types); empty
    /// when there is none.
    std::string findMimeIconNameXDG(const char* mime, SearchIconNameType type) const;
    std::string getMimeIconNameXDG(const char* mime) const;
    std::string getMimeGenericIconNameXDG(const char* mime) const;
    ///@}
    /// mime with its first '/' made '-' (text/plain: text-plain); empty
    /// when there is no '/'.
    std::string getMimeIconNameSimple(const char* mime) const;
    /// The icon file of a MIME type: its default application's icon first,
    /// then the MIME database's names, then the "-x-generic" icon of its
    /// media type.
    std::string getMimeIconPath(const char* mime, int size);
    /// The name (without directory and extension) of getMimeIconPath(mime, 32).
    std::string getMimeIconName(const char* mime);
    /// The file of an icon name, tried in the contexts its name suggests
    /// first (edit-: Actions, folder-: Places, ...) and then in the others;
    /// *context (when given) receives the context it was found in.
    std::string getIconContextAndPath(const char* name, int size, std::string* context);
    ///@{
    /// The icon file of a path, a desktop file, a directory, a "vyx-fm:"
    /// location or a URL (by the handler of its scheme); "network" in
    /// Places when nothing else fits. Fills *context and *iconName when given.
    std::string getURLIcon(const char* url, int size, std::string* context, std::string* iconName);
    std::string getURLIconPath(const char* url, int size);
    std::string getURLIconName(const char* url, std::string* context);
    ///@}

    // ---- Size tables ----------------------------------------------------

    /// The standard icon size at or below size (16, 22, 32, 48, 64, 96,
    /// 128, 192, 256; 16 below 22).
    static int GetStandardIconSize(int size);
    /// The size of an emblem on an icon of size: 8 up to 31, 16 up to 48,
    /// 22 up to 64, 32 up to 96, 48 up to 128, 64 above.
    static int GetIconEmblemSize(int size);
    ///@{
    /// Sizes for a screen of dpi dots per inch: the DPI step (0 below 130,
    /// 1 to 167, 2 to 239, 3 to 335, 4 above) plus step picks an icon size
    /// from 16 to 256; frame titles and borders grow from base by 10 and 3
    /// per DPI step.
    static int GetIconSizeForDPI(int dpi, int step);
    static int GetFrameTitleSizeForDPI(int dpi, int base);
    static int GetFrameBorderSizeForDPI(int dpi, int base);
    ///@}

    // ---- Cursor themes --------------------------------------------------

    /// The current X cursor theme: from the user's and the system's
    /// Xresources, the display's Xcursor setting, XCURSOR_THEME, the
    /// "default" icon themes' Inherits, then the system alternative; empty
    /// when none names one.
    static std::string getCurrentCursorThemeName(Display* display);
    /// Makes name the user's cursor theme (the "Xcursor.theme" resource of
    /// ~/.Xresources, other resources kept); false when it cannot be written.
    static bool setCurrentCursorThemeName(const char* name);
    ///@{
    /// The installed cursor themes (those with a "cursors" directory) in
    /// the theme search directories: their names, and their directories.
    static std::vector<std::string> getCursorThemeNames();
    static std::vector<std::string> getCursorThemePaths();
    ///@}

    /// The file of the icon iconName at iconSize (below 1: 32) in context
    /// (null: any), searched in this theme, its parents, bigger sizes,
    /// shorter generic names and the system pixmap directories; empty when
    /// there is none. Answers are remembered per theme. Any thread may call
    /// on a loaded theme.
    /// What the theme's directories hold is kept in memory so that missing
    /// candidates cost no system call; a returned file is always checked on
    /// disk, but an icon installed while the theme is in use can take up to
    /// two seconds to be found.
    std::string getIconPath(const char* iconName, int iconSize, const char* iconContext);
    /// A name that is a path: absolute, or relative to a theme search
    /// directory. Empty when no file exists. context, when given, receives
    /// the context its directory stands for (or stays empty).
    static std::string CheckFullPath(const char* name, std::string* context);

    /// The directory of the installed theme themeName (the first in search
    /// order); empty when there is none.
    static std::string findThemePath(const std::string& themeName);
    /// The current theme; a new one once the configured name changes (the old
    /// one stays valid). forceLoad loads it. Any thread may call.
    static VyxIconTheme* current(Vyx::tagged_bool<ForceLoad_tag> forceLoad);
    /// The theme of the tray icons, or null when the tray uses none of its own;
    /// the same rules as current().
    static VyxIconTheme* currentTray(Vyx::tagged_bool<ForceLoad_tag> forceLoad, const std::string& colorHint);
    /// A theme of the current name, loaded once and kept until exit.
    static VyxIconTheme& instance();
    /// The configured theme; "vyx-orvel" when none is configured.
    static std::string getCurrentThemeName();
    /// The configured tray theme for a panel of colour colorHint ("#RRGGBB";
    /// empty: the configured panel colour); empty when the tray has none.
    static std::string getCurrentTrayThemeName(const std::string& colorHint);
    /// The existing directories that hold icon themes, in search order.
    static std::vector<std::string> GetThemesSearchDirs();
    /// The index.theme files one level below them, in the same order.
    static std::vector<std::string> GetThemesIndexFiles();
    /// The directory names of the themes with size directories, once per
    /// search directory they are installed in.
    static std::vector<std::string> getThemesNames();

private:
    friend class VyxIconThemePrivate;
    std::unique_ptr<VyxIconThemePrivate> d;
};

/// Read-only view of a theme's icon-theme.cache (version 1 of the binary
/// layout the common icon-cache generator writes). A cache older than the
/// theme directory, or than any directory it lists, is refused. Problems are
/// reported on standard error and leave the reader invalid for good; lookups
/// on an invalid reader answer nothing, so callers fall back to the file
/// system. Any thread may look up or read at once: the mapping is never
/// written, and a failed read only clears an atomic flag.
class VYX_EXPORT VyxIconCacheGtkReader {
public:
    ///@{
    /// Opens and checks themePath + "/icon-theme.cache". Never throws; see
    /// isValid().
    explicit VyxIconCacheGtkReader(const std::string& themePath);
    ~VyxIconCacheGtkReader();
    VyxIconCacheGtkReader(const VyxIconCacheGtkReader&) = delete;
    VyxIconCacheGtkReader& operator=(const VyxIconCacheGtkReader&) = delete;
    ///@}

    /// Whether the cache opened, checked out and has not failed a lookup since.
    bool isValid() const { return m_valid; }

    /// The theme-relative directories ("48x48/apps", ...) that hold an image
    /// of iconName (a name without extension), in the cache's order. The
    /// pointers stay valid while the reader lives. Empty when the icon is
    /// absent or the reader is invalid.
    std::vector<const char*> lookup(const std::string& iconName);

    ///@{
    /// Big-endian reads from the cache. read32 needs a 4-aligned offset with
    /// 4 bytes left, read16 an even one with 2 bytes left; a read that breaks
    /// this answers 0 and makes the reader invalid.
    uint32_t read32(uint32_t offset);
    uint16_t read16(uint32_t offset);
    ///@}

private:
    uint32_t read32At(uint64_t offset);
    uint16_t read16At(uint64_t offset);
    std::vector<const char*> imagesOf(uint32_t entry);
    /// Every image the cache lists: the directory names by index into
    /// *dirs, and visit(icon name, directory index, flags) once per image.
    /// False when a damaged part ends the walk early; the valid flag is left
    /// as it is. The library no longer calls it; it stays defined so that
    /// the symbol the first release exported stays.
    bool forEachImage(std::vector<const char*>* dirs,
                      const std::function<void(const char*, uint16_t, uint16_t)>& visit) const;

    int64_t m_modified = 0;  ///< the cache file's modification time, ns

    const unsigned char* m_data = nullptr;  ///< the whole file, mapped; null when not mapped
    uint64_t m_size = 0;
    ///@{
    /// Cleared by a failing lookup while other threads may be looking up:
    /// they then answer nothing, never read a torn flag.
    std::atomic<bool> m_valid {false};
    std::string m_cachePath;
    std::unique_ptr<Vyx::detail::MappedFile> m_file;  ///< owns the mapping
    ///@}
};

#endif
