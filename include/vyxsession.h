// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_SESSION_H
#define VYXCORE_SESSION_H

/// \file
/// Which kind of graphical session runs, which desktop owns the X display,
/// whether the session is remote or nested, and display numbers; the
/// channels to the window and display managers, autostart, the recent-items
/// menu and the desktop's icon positions.
///
/// Threads: every function may be called from several threads at once; the
/// message catalogue and the desktop-position file have a mutex each (the
/// position file is also locked between processes), the recent-items folder
/// a lock file that keeps threads and processes apart, and the kiosk answer
/// is decided once. Functions that take a Display use it as Xlib does, and
/// whatDE and FindToplevelWindowByName swap the X error handler (see
/// vyxdisplay.h). vyxSessionName's answer belongs to the environment,
/// GetVyxWMMessage's to the library.

#include "vyxexport.h"
#include "vyxstrings.h"

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

struct utimbuf;

///@{
/// Xlib's own declarations, repeated so that this header does not pull in
/// Xlib and its macros; they name the same types.
typedef struct _XDisplay Display;
typedef unsigned long Window;
///@}

/// Session kinds, from DESKTOP_SESSION. The numeric values are part of the
/// interface.
enum WhatVyxSession {
    UnknownSession = 0,
    FailsafeSession = 1,
    VyxDefaultSession = 2,
    VyxTabletSession = 3,
    VyxMiniSession = 4,
    VyxMobileSession = 5,
    VyxWestonSession = 6,
    VyxKioskSession = 7,
    VyxTabletKioskSession = 8
};

/// The desktop environment owning the display, from the properties of window
/// (normally the root window): 0 none recognised, 1 KDE, 2 GNOME, 3 CDE,
/// 4 SGI desktop, 5 this desktop. An EWMH window-manager name wins over the
/// legacy properties. Never fails: unreadable properties count as absent.
VYX_EXPORT int whatDE(Display* display, Window window);

/// DESKTOP_SESSION, or null when unset. The pointer belongs to the
/// environment: do not keep it across changes of the variable.
VYX_EXPORT const char* vyxSessionName();
/// The session kind of DESKTOP_SESSION (matched ignoring case); 0 when it is
/// unset or names no kind of ours.
VYX_EXPORT WhatVyxSession whatVyxSession();
/// True in a kiosk session (kinds 7 and 8). Decided on the first call and
/// kept for the life of the process.
VYX_EXPORT bool isVyxKioskSession();
/// The suffix that selects this session's variant of a settings file:
/// ".vyx-tablet", ".vyx-mini", ".vyx-mobile", ".vyx-kiosk",
/// ".vyx-tablet-kiosk" for those kinds, empty for failsafe, vyx and weston.
/// For any other value: "." + DESKTOP_SESSION unless that is unset or "vyx".
VYX_EXPORT std::string vyxSessionConfigSuffix(WhatVyxSession kind);
/// Writes name (DESKTOP_SESSION when null) without a newline to
/// "last-desktop-session-name" in the vyx home directory. False when there is
/// no name or the file cannot be opened; the directory is not created. The
/// file is rewritten in place: two different names saved at once may mix.
VYX_EXPORT bool vyxSessionSaveName(const char* name);
/// The first line of "last-desktop-session-name", or empty.
VYX_EXPORT std::string vyxSessionGetSavedName();

/// The display number of name (or, when it is null or empty, of display's
/// display string, or of DISPLAY): 0 when there is no name at all, -1 (with
/// "Wrong display name ..." on standard error) when it has no ':' or the
/// number is followed by other text. Throws std::invalid_argument when
/// nothing numeric follows the ':' and std::out_of_range for a number beyond
/// int.
VYX_EXPORT int GetDisplayNumberByName(const char* name, Display* display);
/// True unless the display name (resolved as above) is local: ":<digit>...",
/// "localhost..." or "127...". False when there is no name.
VYX_EXPORT bool isSessionRemote(const char* name, Display* display);
/// True when the X server's vendor string of display contains "Xephyr"
/// (ignoring case). name is not used; display must not be null.
VYX_EXPORT bool isSessionNested(const char* name, Display* display);
/// The first display number from start (0 when negative) up to 59535 whose
/// abstract socket "/tmp/.X11-unix/X<n>" is free; -1 when none is, or when no
/// socket can be made. The number is not reserved.
VYX_EXPORT int getFreeXDisplayNumber(int start);

// ---- Window-manager and display-manager channels ----------------------
//
// The display name used below is display's display string when display is
// given, else $DISPLAY.

/// The window manager's FIFO ("vyx-wm-" + display name in XDG_RUNTIME_DIR,
/// else the temporary directory): the path, and whether it exists. An
/// administrator also finds the FIFO of a window manager that runs as
/// another user on the display (under /var/run/user). The path is given
/// even when nothing was found, so that callers can name it.
VYX_EXPORT std::pair<std::string, bool> FindVyxWMFIFOPath(Display* display);
/// The caller's own FIFO path, and whether the caller may write it.
VYX_EXPORT std::pair<std::string, bool> GetVyxWMFIFOPath(Display* display);
/// The display manager's socket ($DM_CONTROL or /var/run/xdmctl, then
/// "/dmctl-" + display name without its screen + "/socket"), and whether it
/// is writable.
VYX_EXPORT std::pair<std::string, bool> GetVyxDMFIFOPath(Display* display);
///@{
/// Writes command (one line, with its "\n") to the window manager's FIFO.
/// Never blocks: false when the FIFO cannot be found or no window manager
/// reads it.
VYX_EXPORT bool SendCommandToWM(Display* display, const char* command);
VYX_EXPORT bool vyxSendCommandToWM(Display* display, const char* command);
///@}
///@{
/// Sends command to the display manager's socket (spaces become the
/// protocol's tabs) and copies the reply to out (standard output when null)
/// up to a chunk that ends a line. A null command only checks that the
/// socket is writable. False when the socket cannot be reached or written.
VYX_EXPORT bool SendCommandToDMWithReply(Display* display, const char* command, FILE* out);
VYX_EXPORT bool SendCommandToDM(Display* display, const char* command);
///@}
/// The sessions the display manager reports ("/usr/bin/vyx-dmctl list"),
/// one record each; empty when it reports none or cannot be run.
VYX_EXPORT std::vector<std::string> GetDMSessionsList();
/// The number of reserve displays the display manager reports; 0 when unknown.
VYX_EXPORT int GetDMReserveNum();
/// The first direct child of parent whose WM_NAME is name, else whose class
/// hint begins with name, else whose WM_ICON_NAME is name; 0 when none.
VYX_EXPORT Window FindToplevelWindowByName(Display* display, Window parent, const char* name);
/// The organisation that ships the desktop.
VYX_EXPORT std::string GetOrganization();
/// Message index of the window manager's catalogue (a ".msg" file of its data
/// directory for the locale), loaded on first use. An untranslated message
/// takes the first fallback given for it for the rest of the process. Null
/// for a negative index (which only loads the catalogue). The text belongs to
/// the library and stays valid for the life of the process.
VYX_EXPORT const char* GetVyxWMMessage(int index, const char* fallback);
/// The locale of the catalogue file that was loaded; empty when none.
VYX_EXPORT std::string GetVyxWMMessageLocale();

// ---- Autostart ----------------------------------------------------------
//
// name is an application id or file name ("foo" or "foo.desktop"), a path
// to a desktop file, or a path to another file (whose bare presence in an
// autostart directory then means enabled).

/// Whether the program starts with the session.
VYX_EXPORT bool vyxIsAutostartEnabled(const char* name);
/// The autostart file that decided; empty when none did, or when a system
/// file disables the program.
VYX_EXPORT std::string vyxAutostartEnabledPath(const char* name);
/// Switches autostart on or off in the user's autostart directory (system
/// files are never changed); command, when given, becomes the entry's Exec.
/// Disabling with deleteIfDisabled deletes the user's file and answers true
/// when the deletion FAILED (kept so on purpose); otherwise true on success.
VYX_EXPORT bool vyxEnableAutostart(const char* name, bool enable, const char* command,
                                   Vyx::tagged_bool<DeleteIfDisabled_tag> deleteIfDisabled);

// ---- Recent-items menu ----------------------------------------------------

/// Records path in the user's recent-items folder (start menu + "/recents",
/// which must exist; at most ten items, the oldest going) and tells the
/// window manager when display is given. With progsOnly only programs are
/// recorded. 0 written (or nothing to do), 1 a desktop entry copied
/// (0 when the copy failed), -1 bad path or the write failed, -2 no
/// recents folder, no '/' in path or the folder cannot be listed.
VYX_EXPORT int putEntryToRecentsMenu(const char* path, const char* icon, Display* display,
                                     Vyx::tagged_bool<ProgsOnly_tag> progsOnly);

// ---- Desktop icon positions -------------------------------------------------

/// Stores where the desktop icon of name stands, in the desktop directory's
/// ".directory" (section "IconPosition::" + name), which must already exist.
/// False when it does not or cannot be saved.
VYX_EXPORT bool SaveDesktopItemPosition(const char* name, int x, int y, const std::string& monitor);
/// Removes that section; false when the file does not exist or cannot be saved.
VYX_EXPORT bool RemoveDesktopItemPosition(const char* name);
/// Tells the window manager that the desktop item oldPath is now newPath
/// (nothing when oldPath is not in the desktop directory).
VYX_EXPORT void RenameDesktopShortcutCoord(const char* oldPath, const char* newPath, Display* display);
/// Gives path the time stamp of "menutime" (or times when given): always
/// with force, else only when its modification time already matches.
VYX_EXPORT void syncDesktopEntryTime(bool force, const char* path, const struct utimbuf* times);
/// The same for every desktop file of the start menu, the kiosk toolbar and
/// ~/Desktops.
VYX_EXPORT void syncUserDesktopEntriesTime(bool force, const struct utimbuf* times);

#endif
