// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_DESKTOPENTRY_H
#define VYXCORE_DESKTOPENTRY_H

/// \file
/// Desktop entries (".desktop" and ".directory" files): the in-memory model,
/// loading with the user's translations, saving, merging, and the expansion
/// of the Exec key into a command line.
///
/// Threads: the free functions may be called from several threads at once: the
/// language list and the application-directory list are built once under a
/// once-only guard, and the catalogue functions return values the caller owns.
/// GetDesktopEntryFullPath is the exception (see there). Objects follow the
/// rule of the standard containers (see each class). The suitability checks
/// (isSuitable, isExecSuitable and what is built on them) ask isUserInGroup()
/// once per process under a once-only guard.

#include "vyxexport.h"
#include "vyxstrings.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class VyxDesktopActionPrivate;
class VyxDesktopEntryPrivate;

/// The user's languages for translated keys, from LANGUAGE, else LC_ALL or
/// LANG, reduced to language codes ("de", "ru", ...). Computed once per
/// process; empty when no language is set.
VYX_EXPORT std::vector<std::string> GetLangPref();

/// One "Desktop Action" of an entry. A value: copies are deep. Like a
/// standard container, const members may be used from several threads at
/// once; a thread that changes an action needs it to itself.
class VYX_EXPORT VyxDesktopAction {
public:
    /// An action with the id (the part after "Desktop Action ") and no fields.
    explicit VyxDesktopAction(const std::string& id = std::string());
    ///@{
    /// Copyable and movable; a moved-from action is only fit to be assigned
    /// to or destroyed.
    VyxDesktopAction(const VyxDesktopAction& other);
    VyxDesktopAction(VyxDesktopAction&& other) noexcept;
    VyxDesktopAction& operator=(const VyxDesktopAction& other);
    VyxDesktopAction& operator=(VyxDesktopAction&& other) noexcept;
    ~VyxDesktopAction();
    ///@}
    ///@{
    /// Field-by-field equality.
    bool operator==(const VyxDesktopAction& other) const;
    bool operator!=(const VyxDesktopAction& other) const { return !(*this == other); }
    ///@}

    ///@{
    /// The action's fields. Each getter returns an empty string or list when
    /// the field is unset; the reference belongs to the action and stays
    /// valid until the field is set again or the action is destroyed.
    const std::string& id() const;
    void setId(const std::string& id);
    const std::string& name() const;
    void setName(const std::string& name);
    const std::string& localName() const;
    void setLocalName(const std::string& name);
    const std::string& comment() const;
    void setComment(const std::string& comment);
    const std::string& localComment() const;
    void setLocalComment(const std::string& comment);
    const std::string& icon() const;
    void setIcon(const std::string& icon);
    const std::string& localIcon() const;
    void setLocalIcon(const std::string& icon);
    const std::string& path() const;
    void setPath(const std::string& path);
    const std::string& exec() const;
    void setExec(const std::string& exec);
    const std::vector<std::string>& onlyShowIn() const;
    void setOnlyShowIn(const std::vector<std::string>& desktops);
    const std::vector<std::string>& notShowIn() const;
    void setNotShowIn(const std::vector<std::string>& desktops);
    ///@}

    ///@{
    /// The translation when there is one, else the untranslated value.
    const std::string& localNameOrFallback() const;
    const std::string& localCommentOrFallback() const;
    const std::string& localIconOrFallback() const;
    ///@}

private:
    std::unique_ptr<VyxDesktopActionPrivate> d;
};

/// A desktop entry (a ".desktop" or ".directory" file) bound to its path:
/// the keys the library knows as fields, the others kept in file order,
/// and its actions. Movable, not copyable (copyFrom() copies the fields).
/// Getters return references into the entry, valid until that field is set
/// again, the entry is loaded again or it is destroyed. Like a standard
/// container, const members may be called from several threads at once;
/// load(), the setters and the copy functions need the entry to themselves,
/// and so does isValid() until load() has run for the entry's current path.
class VYX_EXPORT VyxDesktopEntry {
public:
    /// Why an entry is not shown in this session.
    enum DisplayableCode : int32_t {
        Displayable = 0,
        DisplayableHidden = -1,  ///< Hidden is true
        DisplayableNotForSession = -2,  ///< OnlyShowIn, NotShowIn or the kiosk whitelist
        DisplayableNoDisplay = -3  ///< NoDisplay is true
    };
    /// Why an entry cannot be used here. 6 is not used.
    enum SuitableCode : int32_t {
        Suitable = 0,
        SuitableNoType = 1,
        SuitableBadExec = 2,  ///< empty command, or an unterminated or empty quoted program
        SuitableExecNotFound = 3,  ///< the program is a path that does not exist
        SuitableExecNotInPath = 4,  ///< the program is not found in PATH
        SuitableOriginFileMissing = 5,  ///< X-Vyx-OriginFile names a missing file
        SuitableTryExecNotFound = 7,
        SuitableTryExecNotInPath = 8,
        SuitableLinkWithoutUrl = 9,
        SuitableAdminRequired = 10,  ///< needs administrator (or console) rights the user lacks
        SuitableModeMismatch = 11  ///< X-Vyx-OnlyShowInModes does not list the edition mode
    };

    /// Binds the entry to path and, when it is not empty, loads it at once
    /// (see isLoaded()).
    explicit VyxDesktopEntry(const std::string& path = std::string());
    ///@{
    /// Movable, not copyable; a moved-from entry is only fit to be assigned
    /// to or destroyed.
    VyxDesktopEntry(VyxDesktopEntry&& other) noexcept;
    VyxDesktopEntry& operator=(VyxDesktopEntry&& other) noexcept;
    VyxDesktopEntry(const VyxDesktopEntry&) = delete;
    VyxDesktopEntry& operator=(const VyxDesktopEntry&) = delete;
    ~VyxDesktopEntry();
    ///@}

    ///@{
    /// The bound file. A relative path is made absolute from the working
    /// directory; a new path makes the entry not loaded, of unknown validity.
    const std::string& filePath() const;
    void setFilePath(const std::string& path);
    ///@}

    /// Reads the bound file; false when it cannot be read or parsed.
    bool load();
    /// Whether the last load() (or the constructor's) succeeded.
    bool isLoaded() const;
    /// Whether the bound file parses as an INI file at all (not whether it is
    /// a sensible entry); decided once per path, by load() or else by the
    /// first call, which reads the file and remembers the answer unlocked.
    bool isValid() const;

    /// Writes the entry to its file, replacing it atomically: the keys of the
    /// model in a fixed order, then unknown keys and the actions. With
    /// saveEmpty every key is written, even empty. False when a key was
    /// refused or the file could not be written ("libvyxcore:
    /// VyxDesktopEntry::save() can't save file ..." on standard error).
    bool save(Vyx::tagged_bool<SaveEmptyFields_tag> saveEmpty);
    /// The same to another path; the entry stays bound to its own file.
    bool saveAs(const std::string& path, Vyx::tagged_bool<SaveEmptyFields_tag> saveEmpty);

    /// Field-by-field equality of the two entries.
    bool identicalTo(const VyxDesktopEntry& other) const;
    ///@{
    /// Takes every field of other; only the fields that are empty here; only
    /// the fields that are set in other.
    void copyFrom(const VyxDesktopEntry& other);
    void inheritFrom(const VyxDesktopEntry& other);
    void overrideFrom(const VyxDesktopEntry& other);
    ///@}

    ///@{
    /// Strings: empty when unset.
    const std::string& name() const;
    void setName(const std::string& value);
    const std::string& localName() const;
    void setLocalName(const std::string& value);
    const std::string& genericName() const;
    void setGenericName(const std::string& value);
    const std::string& localGenericName() const;
    void setLocalGenericName(const std::string& value);
    const std::string& type() const;
    void setType(const std::string& value);
    const std::string& tryExec() const;
    void setTryExec(const std::string& value);
    const std::string& comment() const;
    void setComment(const std::string& value);
    const std::string& localComment() const;
    void setLocalComment(const std::string& value);
    const std::string& exec() const;
    void setExec(const std::string& value);
    const std::string& icon() const;
    void setIcon(const std::string& value);
    const std::string& localIcon() const;
    void setLocalIcon(const std::string& value);
    const std::string& path() const;
    void setPath(const std::string& value);
    const std::string& startupWMClass() const;
    void setStartupWMClass(const std::string& value);
    const std::string& version() const;
    void setVersion(const std::string& value);
    const std::string& url() const;
    void setUrl(const std::string& value);
    ///@}

    ///@{
    /// Lists: empty when unset.
    const std::vector<std::string>& mimeType() const;
    void setMimeType(const std::vector<std::string>& value);
    const std::vector<std::string>& keywords() const;
    void setKeywords(const std::vector<std::string>& value);
    const std::vector<std::string>& localKeywords() const;
    void setLocalKeywords(const std::vector<std::string>& value);
    const std::vector<std::string>& sortOrder() const;
    void setSortOrder(const std::vector<std::string>& value);
    const std::vector<std::string>& categories() const;
    void setCategories(const std::vector<std::string>& value);
    const std::vector<std::string>& onlyShowIn() const;
    void setOnlyShowIn(const std::vector<std::string>& value);
    const std::vector<std::string>& notShowIn() const;
    void setNotShowIn(const std::vector<std::string>& value);
    ///@}

    ///@{
    /// Optional booleans: has...() tells whether the key was in the file or
    /// set; the getter is false when it was not.
    bool hasNoDisplay() const;
    bool noDisplay() const;
    void setNoDisplay(bool value);
    bool hasHidden() const;
    bool hidden() const;
    void setHidden(bool value);
    bool hasTerminal() const;
    bool terminal() const;
    void setTerminal(bool value);
    bool hasStartupNotify() const;
    bool startupNotify() const;
    void setStartupNotify(bool value);
    bool hasPrefersNonDefaultGPU() const;
    bool prefersNonDefaultGPU() const;
    void setPrefersNonDefaultGPU(bool value);
    bool hasSingleMainWindow() const;
    bool singleMainWindow() const;
    void setSingleMainWindow(bool value);
    ///@}

    ///@{
    /// The entry's actions, in the order of its Actions key.
    const std::vector<VyxDesktopAction>& actions() const;
    void setActions(const std::vector<VyxDesktopAction>& value);
    ///@}

    ///@{
    /// Keys the model does not know (other languages' translations among
    /// them), in file order, so that a save writes them back.
    const std::vector<std::pair<std::string, std::string>>& unknowns() const;
    void setUnknowns(const std::vector<std::pair<std::string, std::string>>& value);
    ///@}
    /// The value of the first unknown key named key; empty when there is none
    /// (or key is null or empty).
    std::string getUnknownValue(const char* key) const;

    /// Whether the entry is shown in this session: not Hidden, meant for this
    /// desktop (isForVyx), not NoDisplay. code, when given, is set to 0 and
    /// to the reason on failure.
    bool isDisplayable(DisplayableCode* code = nullptr) const;
    /// Whether OnlyShowIn, NotShowIn and, in a kiosk session, the kiosk
    /// whitelist admit the entry to this desktop.
    bool isForVyx(DisplayableCode* code = nullptr) const;
    /// Whether the entry can be used here by this user: a type, a URL for
    /// links, TryExec and Exec programs that exist, administrator marks, the
    /// origin file and the edition modes. A false answer may leave code 0
    /// (an "su-to-root" without "-c", an "env" without a program): treat
    /// false as unsuitable whatever the code.
    bool isSuitable(SuitableCode* code = nullptr) const;
    /// The Exec checks alone, on a raw command (field codes not expanded).
    static bool isExecSuitable(const char* exec, Vyx::tagged_bool<AdminOnly_tag> adminOnly,
                               SuitableCode* code = nullptr);
    /// Whether tryExec names an existing program (searched in PATH without a "/").
    static bool isTryExecSuitable(const char* tryExec, SuitableCode* code = nullptr);

    ///@{
    /// The translation when there is one, else the untranslated value.
    const std::string& localNameOrFallback() const;
    const std::string& localGenericNameOrFallback() const;
    const std::string& localCommentOrFallback() const;
    const std::string& localIconOrFallback() const;
    const std::vector<std::string>& localKeywordsOrFallback() const;
    ///@}

private:
    std::unique_ptr<VyxDesktopEntryPrivate> d;
};

// --- the application catalogue ---

/// Builds, once per process, the ordered application directories (the user's,
/// then the XDG data directories, then the system's) and the path of the
/// per-user MIME cache file (the MIME alias table is read on first use). Later calls return at once.
VYX_EXPORT void FillDesktopEntriesDirArray();
/// The application directories, highest priority first.
VYX_EXPORT std::vector<std::string> GetAllAppDesktopEntrySearchPaths();
/// The full path of a desktop file name: an absolute name as it is, else the
/// first application directory that holds it; empty when none does, or when
/// the directories have not been built yet (FillDesktopEntriesDirArray).
/// It reads them without the once-only guard, so a first build on another
/// thread races with it: call FillDesktopEntriesDirArray() first.
VYX_EXPORT std::string GetDesktopEntryFullPath(const char* name);
/// The desktop file of the installed application with the desktop-file id id
/// ("vendor-app.desktop" may lie in "vendor/app.desktop"): the first
/// application directory that holds it. Empty when none does, or when id is
/// not a plain id (it holds "/", a blank or "=;[]", starts with ".", or does
/// not end in ".desktop"). Builds the directories on first use.
VYX_EXPORT std::string GetDesktopFileForId(const char* id);
/// Every desktop file of every application directory (two levels deep); a
/// name found in two directories is listed twice, the first directory first.
VYX_EXPORT std::vector<std::string> GetAllAppDesktopEntryPaths();
/// Every entry of type "Application" among those files.
VYX_EXPORT std::vector<VyxDesktopEntry> GetAllAppDesktopEntries();
/// The menu folders (".directory" files of type "Directory" with categories),
/// each as its path with the last 11 characters cut off.
VYX_EXPORT std::vector<std::string> GetAllCategorizedFolderList();

/// An Exec value and what to open with it, expanded by toString() into one
/// shell command line. Fields are borrowed from the caller; null or empty
/// means absent. toString() consumes what it substitutes (a used field is set
/// to null, a used list cleared), so each value appears at most once, and it
/// needs the record to itself.
struct VYX_EXPORT ExecFormatString {
    const char* format = nullptr;  ///< the Exec value with %f %F %u %U %i %c %k
    const char* file = nullptr;  ///< %f
    const char* url = nullptr;  ///< %u
    const char* icon = nullptr;  ///< %i, written as "--icon NAME"
    const char* caption = nullptr;  ///< %c
    const char* location = nullptr;  ///< %k
    std::vector<const char*> files;  ///< %F
    std::vector<const char*> urls;  ///< %U
    char separator = 0;  ///< between list items; 0 for none

    /// The command line; empty for an absent format or one that ends in a
    /// lone "%". For trusted values only: a file name can turn into shell
    /// syntax here; to start a program use ExecToArgVectors or
    /// LaunchDesktopEntry, which hand no shell anything.
    std::string toString();
};

// --- starting applications without a shell ---

/// The argument vectors for running exec (an Exec value as it stands in the
/// file) on targets, one vector per process to start. The value's escapes
/// (`\s` `\n` `\t` `\r` `\\`) are undone, then it is split at blanks; double quotes
/// hold blanks, and inside them a backslash escapes only ", `, $ and \.
/// Field codes expand to whole arguments: %f one file and %u one URL (one
/// process per target when there are several), %F and %U every target, each
/// an argument of its own, %i the two arguments "--icon" icon (nothing
/// without an icon), %c caption, %k location, %% a "%"; %d %D %n %N %v %m
/// expand to nothing. A program that names none of %f %F %u %U gets the
/// targets as if it ended in %f. A target is a URL when it starts with a
/// scheme ("scheme:"), else a file (made absolute from the working
/// directory); a file becomes a "file://" URL for %u %U, a local "file:" URL
/// a path for %f %F. Nothing is ever interpreted: "$", backquotes and globs
/// stay as they are. Empty, with the reason in *error (or on standard error
/// when error is null), for an invalid value: unbalanced quotes, a field
/// code inside quotes, an unknown code, %F %U %i inside a longer argument,
/// more than one of %f %F %u %U, no program, a program name with "=", or a
/// non-local URL for a program that opens only files. Thread-safe.
VYX_EXPORT std::vector<std::vector<std::string>> ExecToArgVectors(const char* exec,
                                                                  const std::vector<std::string>& targets,
                                                                  const char* icon, const char* caption,
                                                                  const char* location, std::string* error = nullptr);
/// The same for an entry: its Exec, its translated icon and name for %i and
/// %c, its file for %k.
VYX_EXPORT std::vector<std::vector<std::string>> ExecArgVectors(const VyxDesktopEntry& entry,
                                                                const std::vector<std::string>& targets,
                                                                std::string* error = nullptr);

/// Starts the application entry for targets (files or URLs, as for
/// ExecToArgVectors) with posix_spawnp: no shell, standard input from
/// /dev/null, the entry's Path as working directory, and for Terminal=true
/// inside "x-terminal-emulator -e". Returns the first process id (pids, when
/// given, receives every one); the caller reaps them or ignores SIGCHLD. -1,
/// with the reason in *error (or one line on standard error when error is
/// null), when the entry is not loaded, not an application, not usable here
/// (isSuitable, its code given), its Exec is invalid, or a program (the
/// terminal included) cannot be started; processes already started for
/// earlier targets keep running and are in pids. Thread-safe.
VYX_EXPORT int LaunchDesktopEntry(const VyxDesktopEntry& entry, const std::vector<std::string>& targets,
                                  std::string* error = nullptr, std::vector<int>* pids = nullptr);

#endif
