// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "themes/themesettings_p.h"

#include "core/inireader_p.h"
#include "core/session_p.h"
#include "vyxdirs.h"

namespace Vyx::detail {

std::string settingsFile(const char* name)
{
    const std::string& dir = GetVyxDir(ThemeDir);
    return dir.empty() ? std::string() : dir + "/" + name;
}

std::string themeSettingsFile()
{
    std::string file = settingsFile("current.themerc");
    return file.empty() ? file : file + Vyx::detail::sessionConfigSuffix();
}

std::string themeSetting(const char* key)
{
    const std::string file = themeSettingsFile();
    IniReader ini;
    return !file.empty() && ini.loadFile(file) ? ini.text("Variables", key) : std::string();
}

}  // namespace Vyx::detail
