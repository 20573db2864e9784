// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_MIME_H
#define VYXCORE_MIME_H

/// \file
/// Which applications open a MIME type: the installed ones (each application
/// directory's mimeinfo.cache, or the MimeType keys of its desktop files,
/// kept in a per-user cache file) and the ones assigned in mimeapps.list
/// files. Aliases of a type widen both lookups.
///
/// Threads: the default-application functions may be called from several
/// threads at once (the available-application map, its cache file and the
/// assignment maps each have a mutex; the list of lists is built once). The
/// xdg_mime_* calls are serialised by one recursive process-wide lock; their
/// const char* answers belong to the library and die with xdg_mime_shutdown():
/// while another thread may shut down, hold xdg_mime_lock() from a call until
/// done with its answer. GetPreferredApplications reads parent types without
/// holding it: never shut down while it may run on another thread.

#include "vyxdesktopentry.h"
#include "vyxexport.h"
#include "vyxstrings.h"

#include <string>
#include <vector>

/// The aliases recorded for the canonical type mime, in file order; empty
/// when there are none.
VYX_EXPORT std::vector<std::string> GetMimeAliases(const char* mime);

/// The desktop files of the installed applications that open mime: only the
/// first unless all. Empty for a null or empty type or when none does.
VYX_EXPORT std::vector<std::string> GetDesktopEntryPathForMime(const char* mime,
                                                               Vyx::tagged_bool<AllDesktopEntries_tag> all);
/// The same, each made into a desktop entry.
VYX_EXPORT std::vector<VyxDesktopEntry> GetDesktopEntryForMime(const char* mime,
                                                               Vyx::tagged_bool<AllDesktopEntries_tag> all);

/// What the lookups above did with the user's cache file of installed
/// applications when they last loaded their map in this process.
struct VyxMimeCacheUse {
    std::string path;  ///< the file; empty when the user has no private place for one
    bool read = false;  ///< the map was read from it
    bool written = false;  ///< the map was built from the application directories and saved in it
    std::string ignored;  ///< why a file that was there was not believed; empty when it was, or was missing
};
/// Loads the map first when it is not current; never fails.
VYX_EXPORT VyxMimeCacheUse GetMimeCacheUse();

/// The existing mimeapps.list files, highest priority first (computed once).
VYX_EXPORT std::vector<std::string> GetMimeappsLists();
/// The user's general mimeapps.list (which need not exist yet); empty
/// without a configuration home.
VYX_EXPORT std::string GetWritableMimeappsList();
/// The user's mimeapps.list for this desktop ("<desktop>-mimeapps.list");
/// empty for the plain "vyx" session or without a desktop name.
VYX_EXPORT std::string GetWritableDesktopMimeappsList();

/// The applications assigned to mime (or one of its aliases) in the "Added
/// Associations" of the mimeapps.list files; only the first unless all.
VYX_EXPORT std::vector<VyxDesktopEntry> GetAssignedDesktopEntryForMime(const char* mime,
                                                                       Vyx::tagged_bool<AllDesktopEntries_tag> all);
/// The icons of those applications.
VYX_EXPORT std::vector<std::string> GetAssignedIconForMime(const char* mime, Vyx::tagged_bool<AllIcons_tag> all);

// --- the user's preferred applications ---

/// One application for a MIME type, and what put it in the list.
struct VyxMimeApp {
    std::string id;  ///< desktop-file id, "org.example.Viewer.desktop"
    std::string path;  ///< its desktop file
    std::string type;  ///< the type it answers for: the one asked, an alias or a parent
    std::string source;  ///< the mimeapps.list that named it; empty for an installed one
    std::string group;  ///< "Default Applications", "Added Associations" or "installed"
};

/// The applications that open mime, most preferred first. Each
/// mimeapps.list, in GetMimeappsLists() order (desktop names lower-cased),
/// gives its "Default Applications" and then, when it is a plain
/// "mimeapps.list", its "Added Associations"; then come the installed
/// applications that list the type. An id named under "Removed Associations"
/// of a list of the same or a higher priority is left out (an id both added
/// and removed in one list is removed); an id that is not installed, is
/// hidden or is not usable here (VyxDesktopEntry::isSuitable) is skipped; no
/// id appears twice. A type is looked up under its canonical name and its
/// aliases together; a type with no answer falls back on its parent types
/// (every text type on text/plain). Empty for a null or malformed type or when nothing opens it.
/// Reads the lists afresh on each call; safe to call from several threads.
VYX_EXPORT std::vector<VyxMimeApp> GetPreferredApplications(const char* mime);

/// Makes the installed application desktopId the default for mime in
/// GetWritableMimeappsList(): "Default Applications" gets "mime=desktopId;",
/// desktopId moves to the front of the type's "Added Associations" and
/// leaves its "Removed Associations" there. Every other line of the file
/// (groups, keys, comments, their order) stays as it was, and the file is
/// replaced atomically. False, with one line on standard error and nothing
/// written, for a malformed type, an id that is not installed or not well
/// formed, or a list that cannot be read whole (not a regular file, larger
/// than 4 MiB, holding NUL bytes or lines that are not INI lines). Two
/// threads or processes setting defaults at once do not corrupt the file,
/// but one of the two changes may be lost.
VYX_EXPORT bool SetDefaultApplication(const char* mime, const char* desktopId);

// --- MIME type detection over the shared MIME database ---
//
// The database is read from the "mime" directory of every XDG data
// directory (the user's first), on first use. Answers are library-owned
// strings, valid until xdg_mime_shutdown(). Calls are serialised by one
// process-wide lock; xdg_mime_lock() and xdg_mime_unlock() let a caller hold
// it across several calls, and across the use of an answer that another
// thread's shutdown would free.

#include <cstddef>
#include <sys/stat.h>

extern "C" {

VYX_EXPORT extern const char xdg_mime_type_unknown[];  ///< "application/octet-stream"
VYX_EXPORT extern const char xdg_mime_type_empty[];  ///< "application/x-zerosize"
VYX_EXPORT extern const char xdg_mime_type_textplain[];  ///< "text/plain"

/// The type of data by its content (magic, else a text/binary guess);
/// *priority (when not null) receives the priority of the magic rule, 0 for a
/// guess.
VYX_EXPORT const char* xdg_mime_get_mime_type_for_data(const void* data, size_t length, int* priority);
/// The type of a file by name and content; with a stat (may be null, then the
/// file is examined), directories, links, devices, FIFOs and sockets give
/// "inode/..." types and an empty file "application/x-zerosize".
VYX_EXPORT const char* xdg_mime_get_mime_type_for_file(const char* file_name, struct stat* statbuf);
/// The type a file name alone gives; xdg_mime_type_unknown when none or when
/// several types tie.
VYX_EXPORT const char* xdg_mime_get_mime_type_from_file_name(const char* file_name);
/// Every type of the best name match, at most n; returns how many.
VYX_EXPORT int xdg_mime_get_mime_types_from_file_name(const char* file_name, const char* mime_types[], int n);
/// 1 when text has the form "media/subtype" with no blanks; else 0.
VYX_EXPORT int xdg_mime_is_valid_mime_type(const char* mime_type);
/// 1 when the two name the same type once aliases are resolved.
VYX_EXPORT int xdg_mime_mime_type_equal(const char* a, const char* b);
/// 1 when the two have the same media part (before "/").
VYX_EXPORT int xdg_mime_media_type_equal(const char* a, const char* b);
/// 1 when mime is base, or a subclass of base (directly, through parents,
/// "text/*" under "text/plain", anything but "inode/*" under
/// "application/octet-stream", or base is a "media/*" wildcard).
VYX_EXPORT int xdg_mime_mime_type_subclass(const char* mime, const char* base);
/// The direct parents of mime, a null-terminated array from malloc() (the
/// strings are library-owned; free only the array); null when none.
VYX_EXPORT char** xdg_mime_list_mime_parents(const char* mime);
/// The canonical name of an alias; mime itself otherwise.
VYX_EXPORT const char* xdg_mime_unalias_mime_type(const char* mime);
///@{
/// The icon (generic icon) name of a type from the database; null when none.
VYX_EXPORT const char* xdg_mime_get_icon(const char* mime);
VYX_EXPORT const char* xdg_mime_get_generic_icon(const char* mime);
///@}
/// How many bytes of a file the content rules may look at.
VYX_EXPORT int xdg_mime_get_max_buffer_extents(void);
/// Frees the database; the next call reads it again. Every answer given so
/// far dies with it, also one another thread is still using.
VYX_EXPORT void xdg_mime_shutdown(void);
///@{
/// The process-wide lock the calls above take (recursive, so a holder may
/// call them).
VYX_EXPORT void xdg_mime_lock(void);
VYX_EXPORT void xdg_mime_unlock(void);
///@}
}

#endif
