// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_THEMESETTINGS_P_H
#define VYXCORE_THEMESETTINGS_P_H

// Where the user's theme choices are kept: the icon, sound and cursor
// themes all read the same settings files.

#include <string>

namespace Vyx::detail {

// The file called name in the user's theme-settings directory; empty when
// there is none.
std::string settingsFile(const char* name);
// The theme settings shared by the icon and sound themes: "current.themerc"
// with the session's configuration suffix, so that each kind of session
// keeps its own choice. Empty when there is no settings directory.
std::string themeSettingsFile();
// The value of key in group "Variables" of themeSettingsFile(); empty when
// the file or the key is missing.
std::string themeSetting(const char* key);

}  // namespace Vyx::detail

#endif
