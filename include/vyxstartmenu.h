// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_STARTMENU_H
#define VYXCORE_STARTMENU_H

/// \file
/// The start menu: a tree of folders holding applications, built from the
/// user's start-menu directory (layered over the shared one) and from the
/// categorized folders of the application directories, which collect the
/// installed applications by their Categories.
///
/// Threads: CreateStartMenu may be called from several threads at once; it
/// builds a new tree each time, owned by the caller, who uses it as any
/// standard container. Its suitability checks follow vyxdesktopentry.h.

#include "vyxdesktopentry.h"
#include "vyxexport.h"
#include "vyxstrings.h"

#include <string>
#include <vector>

/// Flag of CreateStartMenu: keep folders that end up with no application.
struct IncludeEmptyFolders_tag { };

/// One folder of the start menu. A value that owns its subfolders and its
/// applications; movable, not copyable (it holds desktop entries).
struct VYX_EXPORT MenuFolderDsc {
    /// The folder's directory name ("Games"); empty for the root, "Other" for
    /// the folder of applications that no folder's Categories claim.
    std::string name;
    /// The translated Name of the folder's ".directory", else its Name, else
    /// name. Empty for the root when it has no ".directory".
    std::string localName;
    /// The (translated) Icon of the ".directory"; empty when it names none.
    /// The "Other" folder made by CreateStartMenu has "applications-other".
    std::string icon;
    /// The ".directory" file that describes the folder; empty when none does
    /// (a damaged one, one of another type, the root without one, "Other").
    std::string directoryFile;
    /// SortOrder of the ".directory": names of subfolders ("Games", also
    /// "Games/") and of desktop files ("chess.desktop", also "chess"), listed
    /// first and in this order. Empty when there is none.
    std::vector<std::string> sortOrder;
    /// Categories of the ".directory": the folder collects every installed
    /// application that lists one of them (compared exactly). Empty when the
    /// folder collects none.
    std::vector<std::string> categories;
    /// The subfolders, ordered as sortOrder says, then by localName.
    std::vector<MenuFolderDsc> folders;
    /// The applications, loaded, ordered as sortOrder says, then by their
    /// localNameOrFallback(). An application of several categorized folders
    /// is in each of them, loaded once for each.
    std::vector<VyxDesktopEntry> applications;
};

/// Builds the whole start menu and returns its root; a full scan of the
/// start-menu directories and of the application catalogue on every call.
///
/// - The user's start-menu directory (GetVyxDir(StartMenuDir)) is laid over
///   the shared one (SharedStartMenuDir): a subdirectory with a ".directory"
///   file is a folder (down to five levels), a subdirectory without one (such
///   as the recent-items folder) is not part of the menu, and the
///   ".desktop" files of types "Application" and "Link" are its items. Of
///   two files of one name in both layers the user's counts; a folder in both
///   holds the items of both and is described by the user's ".directory"
///   (a Hidden one hides it, shared items too). A ".directory" in the
///   start-menu directory itself describes the root.
/// - Every categorized folder of the application catalogue
///   (GetAllCategorizedFolderList) becomes a top-level folder; the first of a
///   name wins, one named like a top-level folder of the start-menu tree adds
///   its categories to that folder, and one named like a hidden one stays out.
/// - Every installed application (GetAllAppDesktopEntries; of one
///   desktop-file id only the first found counts, so a user's Hidden copy
///   hides the system's) goes into every folder whose categories it lists,
///   and into the top-level folder "Other" when it lists none of them.
///   Applications inside the start-menu directories are left to their own
///   folder.
/// - Folders and applications that are not displayable here or not suitable
///   (VyxDesktopEntry::isDisplayable, isSuitable) are left out, a folder's
///   contents with it: the applications of a hidden folder's categories go
///   to no "Other". A ".directory" that cannot be read or is not of type
///   "Directory" still makes a folder, named after its directory.
/// - Names are compared ignoring ASCII case, other bytes in code-point order.
/// - Folders without any application, also in their subfolders, are left out
///   unless includeEmptyFolders is set; the root is always returned.
///
/// Nothing found gives a root without folders and applications.
VYX_EXPORT MenuFolderDsc CreateStartMenu(Vyx::tagged_bool<IncludeEmptyFolders_tag> includeEmptyFolders);

#endif
