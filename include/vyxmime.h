#ifndef VYXCORE_MIME_H
#define VYXCORE_MIME_H

// Which applications open a MIME type: the installed ones (each application
// directory's mimeinfo.cache, or the MimeType keys of its desktop files,
// kept in a per-user cache file) and the ones assigned in mimeapps.list
// files. Aliases of a type widen both lookups.

#include "vyxdesktopentry.h"
#include "vyxexport.h"
#include "vyxstrings.h"

#include <string>
#include <vector>

// The aliases recorded for the canonical type mime, in file order; empty
// when there are none.
VYX_EXPORT std::vector<std::string> GetMimeAliases(const char* mime);

// The desktop files of the installed applications that open mime: only the
// first unless all. Empty for a null or empty type or when none does.
VYX_EXPORT std::vector<std::string> GetDesktopEntryPathForMime(const char* mime,
                                                               Vyx::tagged_bool<AllDesktopEntries_tag> all);
// The same, each made into a desktop entry.
VYX_EXPORT std::vector<VyxDesktopEntry> GetDesktopEntryForMime(const char* mime,
                                                               Vyx::tagged_bool<AllDesktopEntries_tag> all);

// The existing mimeapps.list files, highest priority first (computed once).
VYX_EXPORT std::vector<std::string> GetMimeappsLists();
// The user's general mimeapps.list (which need not exist yet); empty
// without a configuration home.
VYX_EXPORT std::string GetWritableMimeappsList();
// The user's mimeapps.list for this desktop ("<desktop>-mimeapps.list");
// empty for the plain "vyx" session or without a desktop name.
VYX_EXPORT std::string GetWritableDesktopMimeappsList();

// The applications assigned to mime (or one of its aliases) in the "Added
// Associations" of the mimeapps.list files; only the first unless all.
VYX_EXPORT std::vector<VyxDesktopEntry> GetAssignedDesktopEntryForMime(const char* mime,
                                                                       Vyx::tagged_bool<AllDesktopEntries_tag> all);
// The icons of those applications.
VYX_EXPORT std::vector<std::string> GetAssignedIconForMime(const char* mime, Vyx::tagged_bool<AllIcons_tag> all);

#endif
