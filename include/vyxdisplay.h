// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_DISPLAY_H
#define VYXCORE_DISPLAY_H

/// \file
/// Display and appearance: colour-palette helpers on "#RRGGBB" texts,
/// wallpapers by name, the screen's dots per inch (Xft, RandR, screen size),
/// the RandR primary output, single resources of an X resources file, touch
/// and tablet devices, and the characters of key symbols.
///
/// Threads: the colour, wallpaper, font-size and key-symbol functions keep no
/// state and may be called from any thread. The functions that take a Display
/// use it as Xlib does: calls on one Display from several threads need
/// XInitThreads() first, or one thread per Display. Two rules are
/// process-wide, whatever the Display: findTouchAndTabletDevices, whatDE and
/// FindToplevelWindowByName (vyxsession.h) swap in the library's X error
/// handler for their run, under one library lock: the program must not set
/// its own meanwhile, and an X error of another thread's request in that time
/// is taken for theirs and never reaches the program's handler. SetXftDPI
/// reinitialises fontconfig: no other thread may use fontconfig or Xft then.

#include "vyxexport.h"
#include "vyxstrings.h"

#include <string>
#include <vector>

///@{
/// Xlib's own declarations, repeated so that this header does not pull in
/// Xlib and its macros; they name the same types.
typedef struct _XDisplay Display;
typedef unsigned long Window;
typedef unsigned long KeySym;
///@}

/// The dark variant of the primary colour color ("#RRGGBB", hex digits of
/// either case): the same hue and saturation at three quarters of the
/// lightness, or at half of it when darker. "#RRGGBB" in upper case; empty
/// when color is not of that form.
VYX_EXPORT std::string GetPrimaryDarkColor(const std::string& color, bool darker);

/// The colour of text drawn on background ("#RRGGBB"): "#000000" when the
/// background is light (relative luminance above 0.179, where black gives
/// the higher contrast), else "#FFFFFF"; empty when background is not of
/// that form.
VYX_EXPORT std::string textColorFor(const std::string& background);

/// count shades of color ("#RRGGBB", hex digits of either case), from the
/// colour itself towards black: shade i keeps the hue and saturation at
/// (count - i) / count of the lightness, by the same rule as
/// GetPrimaryDarkColor, so with count 4 the second and third shades are its
/// dark and darker variants. Each is "#RRGGBB" in upper case. count is capped
/// at 256. Empty when color is not of that form or count is below 1.
VYX_EXPORT std::vector<std::string> CreateShadeColors(const std::string& color, int count);

// ---- Wallpapers -------------------------------------------------------------

/// The file of the wallpaper name. An absolute name is taken as it is; any
/// other is looked for, first match winning, in $XDG_DATA_HOME/wallpapers,
/// ~/.vyx/wallpapers, /usr/share/vyx-wm/wallpapers, /usr/share/vyx-wm/images
/// and then in "wallpapers" and "backgrounds" of each $XDG_DATA_DIRS
/// directory (by default /usr/local/share and /usr/share). A name that ends
/// in an image extension (".png", ".jpg", ".jpeg", ".svg", ".webp", ".bmp",
/// ".xpm", any case) is looked for as it is; any other with each of those
/// extensions appended in turn, in each directory before the next is
/// searched. Only regular files (or links to them) count. Empty, with a
/// "vyxcore: " line on standard error, when nothing is found; empty without
/// one for a null or empty name.
VYX_EXPORT std::string FindWallPaperByName(const char* name);

// ---- Screen resolution ------------------------------------------------------
//
// The functions taking a display answer 0 or false (and do nothing) for a
// null display, a screen number the display does not have, or a window that
// is not one of the display's root windows.

/// The font size in points for a screen of dpi dots per inch: 10 below 120
/// dpi, then 11, 12, 14, 16 at 120, 168, 240 and 336, moved by delta steps
/// along 8, 9, 10, 11, 12, 14, 16, 18, 20 (clamped at both ends).
VYX_EXPORT int GetFontSizeForDPI(int dpi, int delta);

/// The DPI that Xft would use for fonts on screen: the "Xft.dpi" resource, or
/// else what Xft derives from the screen's size; 0 when there is none.
VYX_EXPORT double GetXftDPI(Display* dpy, int screen);

/// Publishes a DPI as Xft's default for the display and, with setInXrdb, as
/// "Xft.dpi" (rounded) in the display's resource database. A DPI that Xft
/// already has takes precedence over dpi. Nothing happens when dpi is 0.
VYX_EXPORT void SetXftDPI(Display* dpy, int screen, double dpi, Vyx::tagged_bool<SetInXrdb_tag> setInXrdb);

/// Makes an output primary when the screen of root has none: the first
/// connected output whose CRTC (the current one, else any it can use) sits
/// at the origin with a non-zero size. major and minor are the server's RandR
/// version when the caller knows it, else 0 and 0. True when a primary was
/// already set or the outputs could be searched (even when none qualified);
/// false without RandR 1.3 or screen resources.
VYX_EXPORT bool SetRRPrimary(Display* dpy, Window root, int major, int minor);

/// The DPI of the primary output (made primary by SetRRPrimary first when
/// there is none) from its physical size and its CRTC, width and height
/// swapped for a CRTC turned by 90 or 270 degrees. Values strictly between
/// 90 and 100 count as 96. Either pointer may be null. False when there is
/// no primary output, it reports no physical size, or its CRTC has no size.
VYX_EXPORT bool GetRRPrimaryDPI(Display* dpy, Window root, double* dpix, double* dpiy);

/// The screen's DPI: from its size in millimetres (96 when unknown); while
/// that is 96.x, Xft's DPI and then the RandR primary output's horizontal
/// DPI are asked in turn. 0 for a null display or root 0.
VYX_EXPORT double FindDPI(Display* dpy, int screen, Window root);

/// Like GetRRPrimaryDPI, but leaves the server as it is: without a primary
/// output, the output SetRRPrimary would choose is measured and not made
/// primary. output, when not null, receives the measured output's name
/// (empty when there is none). For programs that only report.
VYX_EXPORT bool QueryRRPrimaryDPI(Display* dpy, Window root, double* dpix, double* dpiy, std::string* output);

/// Like FindDPI, but leaves the server as it is (QueryRRPrimaryDPI where
/// FindDPI asks GetRRPrimaryDPI).
VYX_EXPORT double QueryDPI(Display* dpy, int screen, Window root);

/// Sets one resource in the X resources file: every line containing name is
/// replaced by name + separator + value, or dropped when value is empty or
/// null; the line is appended when no line contains name. The file is
/// replaced as a whole (its permission bits kept) and created when missing.
/// With applyByXrdb the file is then merged into the server's resources
/// ("xrdb -override FILE"), whatever the edit's outcome, unless its name
/// holds characters that xrdb's preprocessor shell would interpret (a
/// message says so). False for a null or empty file or name, and when an
/// existing file's directory is not writable; true otherwise, also when a
/// missing file could not be created or the replacement failed (with a
/// message). Two threads or processes editing one file at once may lose one
/// of the two changes; the file is never torn.
VYX_EXPORT bool setXrdbParameterInFile(const char* file, const char* name, const char* separator, const char* value,
                                       Vyx::tagged_bool<ApllyByXrdb_tag> applyByXrdb);

// ---- Input devices ----------------------------------------------------------

/// What a touch or tablet device is. The values are stable.
enum VyxInputDeviceKind {
    TouchscreenDevice = 0,  ///< touches land where they are on the screen
    TouchpadDevice = 1,  ///< touches move the pointer relative to where it is
    TabletDevice = 2  ///< a pen, stylus or eraser with absolute position
};

/// A touch or tablet device of the display.
struct VyxInputDevice {
    int id = 0;  ///< the XInput 2 device id
    std::string name;  ///< the name the server gives the device
    VyxInputDeviceKind kind = TouchscreenDevice;  ///< what the device is
};

/// The touchscreens, touchpads and tablets among the slave pointers of the
/// display, in the server's order. A device with a direct touch class is a
/// touchscreen and one with a dependent touch class a touchpad. Without a
/// touch class, a device whose name holds the word "touchpad" or "trackpad"
/// (any case) is a touchpad, and one is a tablet when a valuator is labelled
/// "Abs Pressure", "Abs Tilt X" or "Abs Tilt Y" or its name holds the word
/// "stylus", "pen", "eraser" or "tablet". Other devices (mice, keyboards,
/// the server's test devices) are left out. Empty for a null display,
/// without XInput 2 or when the server refuses the query.
VYX_EXPORT std::vector<VyxInputDevice> findTouchAndTabletDevices(Display* dpy);

// ---- Key symbols ------------------------------------------------------------

/// The Unicode code point a key symbol types: for 0x20-0x7E and 0xA0-0xFF
/// the keysym itself; for 0x01000000 + U the code point U (up to U+10FFFF,
/// control characters and surrogates excepted); for the others the
/// character that X11's keysymdef.h names beside the keysym, including the
/// approximate ones it puts in parentheses. -1 when the keysym types no
/// character (function keys, modifiers, unknown values).
VYX_EXPORT long KeySym2Ucs(KeySym keysym);

#endif
