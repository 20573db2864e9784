// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_ENVIRONMENT_P_H
#define VYXCORE_ENVIRONMENT_P_H

// Internal interface of core, open to every folder of the library.
//
// The one environment accessor of the library, and the one place that
// knows the XDG base-directory rules (homes, lists and their defaults). A variable that is set but
// empty means the same as an unset one everywhere, so every reader goes
// through here instead of calling getenv directly.

#include <string>
#include <vector>

namespace Vyx::detail {

// The value of name, or null when it is unset or empty. The pointer belongs
// to the environment.
const char* envValue(const char* name);

// The value of name, or the empty string when it is unset or empty.
std::string envString(const char* name);

// "HOME" if set, else "/home/" + the first of "LOGNAME", "USER" that is set;
// empty when none is.
std::string homeFromEnvironment();

// The user's own configuration directory: "XDG_CONFIG_HOME", else home +
// "/.config"; empty when there is no home either.
std::string userConfigHome();
// The user's own data directory: "XDG_DATA_HOME", else home +
// "/.local/share"; empty when there is no home either.
std::string userDataHome();
// The same with the home already known, for a caller that keeps its own.
std::string userDataHome(const std::string& home);
// The user's cache directory: "XDG_CACHE_HOME", else home + "/.cache";
// empty when there is no home either.
std::string userCacheHome(const std::string& home);

// The system data directories: "XDG_DATA_DIRS" split at ':' with empty
// pieces dropped, else "/usr/local/share" then "/usr/share".
std::vector<std::string> xdgDataDirList();
// The system configuration directories: "XDG_CONFIG_DIRS" split at ':'
// with empty pieces dropped, else "/etc/xdg".
std::vector<std::string> xdgConfigDirList();

}  // namespace Vyx::detail

#endif
