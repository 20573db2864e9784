#ifndef VYXCORE_SESSION_H
#define VYXCORE_SESSION_H

// Which kind of graphical session runs, which desktop owns the X display,
// whether the session is remote or nested, and display numbers.

#include "vyxexport.h"

#include <string>

// Xlib's own declarations, repeated so that this header does not pull in
// Xlib and its macros; they name the same types.
typedef struct _XDisplay Display;
typedef unsigned long Window;

// Session kinds, from DESKTOP_SESSION. The numeric values are part of the
// interface.
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

// The desktop environment owning the display, from the properties of window
// (normally the root window): 0 none recognised, 1 KDE, 2 GNOME, 3 CDE,
// 4 SGI desktop, 5 this desktop. An EWMH window-manager name wins over the
// legacy properties. Never fails: unreadable properties count as absent.
VYX_EXPORT int whatDE(Display* display, Window window);

// DESKTOP_SESSION, or null when unset. The pointer belongs to the
// environment: do not keep it across changes of the variable.
VYX_EXPORT const char* vyxSessionName();
// The session kind of DESKTOP_SESSION (matched ignoring case); 0 when it is
// unset or names no kind of ours.
VYX_EXPORT WhatVyxSession whatVyxSession();
// True in a kiosk session (kinds 7 and 8). Decided on the first call and
// kept for the life of the process.
VYX_EXPORT bool isVyxKioskSession();
// The suffix that selects this session's variant of a settings file:
// ".vyx-tablet", ".vyx-mini", ".vyx-mobile", ".vyx-kiosk",
// ".vyx-tablet-kiosk" for those kinds, empty for failsafe, vyx and weston.
// For any other value: "." + DESKTOP_SESSION unless that is unset or "vyx".
VYX_EXPORT std::string vyxSessionConfigSuffix(WhatVyxSession kind);
// Writes name (DESKTOP_SESSION when null) without a newline to
// "last-desktop-session-name" in the vyx home directory. False when there is
// no name or the file cannot be opened; the directory is not created.
VYX_EXPORT bool vyxSessionSaveName(const char* name);
// The first line of "last-desktop-session-name", or empty.
VYX_EXPORT std::string vyxSessionGetSavedName();

// The display number of name (or, when it is null or empty, of display's
// display string, or of DISPLAY): 0 when there is no name at all, -1 (with
// "Wrong display name ..." on standard error) when it has no ':' or the
// number is followed by other text. Throws std::invalid_argument when
// nothing numeric follows the ':' and std::out_of_range for a number beyond
// int.
VYX_EXPORT int GetDisplayNumberByName(const char* name, Display* display);
// True unless the display name (resolved as above) is local: ":<digit>...",
// "localhost..." or "127...". False when there is no name.
VYX_EXPORT bool isSessionRemote(const char* name, Display* display);
// True when the X server's vendor string of display contains "Xephyr"
// (ignoring case). name is not used; display must not be null.
VYX_EXPORT bool isSessionNested(const char* name, Display* display);
// The first display number from start (0 when negative) up to 59535 whose
// abstract socket "/tmp/.X11-unix/X<n>" is free; -1 when none is, or when no
// socket can be made. The number is not reserved.
VYX_EXPORT int getFreeXDisplayNumber(int start);

#endif
