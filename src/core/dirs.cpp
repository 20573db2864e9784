// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxdirs.h"

#include "core/environment_p.h"
#include "core/session_p.h"
#include "vyxfileutils.h"
#include "vyxstrings.h"

#include <mutex>

namespace {

const std::string kWmDataDir = "/usr/share/vyx-wm";
const std::string kVyxDataDir = "/usr/share/vyx";
const std::string kTranslationsDir = "/usr/share/vyx/translations";
const std::string kSoundsDir = kWmDataDir + "/sounds";
const std::string kImagesDir = kWmDataDir + "/images";
const std::string kKeymapsDir = kWmDataDir + "/keymaps";
const std::string kDecorationsDir = kWmDataDir + "/decorations";
const std::string kEmpty;

constexpr int kDirCount = 30;

// One string per cached value and one mutex over all of them. Values 1 and
// 9 share a slot.
std::mutex g_mutex;
std::string g_cache[kDirCount];

std::string userDir(const char* type, const std::string& home, const char* fallback)
{
    std::string dir = xdgUserDirLookup(type);
    if (dir.empty() && fallback && !home.empty())
        dir = home + fallback;
    return dir;
}

std::string orDefault(const char* variable, const char* fallback)
{
    const char* value = Vyx::detail::envValue(variable);
    return value ? std::string(value) : std::string(fallback);
}

// The rule of one cached value. home and vyxHome are already known.
std::string compute(VyxDir dir, const std::string& home, const std::string& vyxHome)
{
    switch (dir) {
    case TempDir:
    case TempDirAlias:
        return orDefault("TMPDIR", "/tmp");
    case ThemeDir: {
        const char* rc = Vyx::detail::envValue("VYX_RC_FILE");
        // A plain substring test: any settings file below the system
        // directory selects the system theme directory.
        if (Vyx::detail::isKioskSession() && rc && Vyx::contains(rc, kWmDataDir))
            return kWmDataDir + "/theme";
        return vyxHome + "/theme";
    }
    // Formed even without a home, giving "/startmenu"; kept as it always was.
    case StartMenuDir:
        return vyxHome + "/startmenu";
    case ControlPanelDir:
        return vyxHome + "/startmenu/controlpanel";
    case DesktopDir:
        return userDir("DESKTOP", home, "/Desktop");
    case DocumentsDir:
        return userDir("DOCUMENTS", home, "/Documents");
    case TrashFilesDir: {
        const std::string data = Vyx::detail::userDataHome(home);
        return data.empty() ? data : data + "/Trash/files";
    }
    case HelpDir:
        return orDefault("VYXHELPDIR", "/usr/share/doc/vyx");
    case QtHelpDir:
        if (const char* help = Vyx::detail::envValue("VYXHELPDIR"))
            return Vyx::concat(help, "/qthelp");
        return "/usr/share/doc/vyx/qthelp";
    case KioskToolbarDir: {
        const char* toolbar = Vyx::detail::envValue("VYX_KIOSK_TOOLBAR_DIR");
        if (Vyx::detail::isKioskSession() && toolbar && fileExists(toolbar, false))
            return toolbar;
        return vyxHome + "/toolbar";
    }
    case HomeDir:
        return home;
    case VideosDir:
        return userDir("VIDEOS", home, nullptr);
    case MusicDir:
        return userDir("MUSIC", home, nullptr);
    case PicturesDir:
        return userDir("PICTURES", home, nullptr);
    case DownloadDir:
        return userDir("DOWNLOAD", home, nullptr);
    case PublicShareDir:
        return userDir("PUBLICSHARE", home, nullptr);
    case TemplatesDir:
        return userDir("TEMPLATES", home, nullptr);
    case AutostartDir:
        return autostartDir();
    case CacheDir:
        return Vyx::detail::userCacheHome(home);
    case SharedDesktopDir:
        return orDefault("VYX_SHARED_DESKTOP_DIR", "/usr/share/applications/vyxdesktop");
    case SharedStartMenuDir:
        return orDefault("VYX_SHARED_STARTMENU_DIR", "/usr/share/applications/vyxstartmenu");
    default:
        return std::string();
    }
}

const std::string* constantFor(VyxDir dir)
{
    switch (dir) {
    case WmDataDir:
        return &kWmDataDir;
    case VyxDataDir:
        return &kVyxDataDir;
    case TranslationsDir:
        return &kTranslationsDir;
    case SoundsDir:
        return &kSoundsDir;
    case ImagesDir:
        return &kImagesDir;
    case KeymapsDir:
        return &kKeymapsDir;
    case DecorationsDir:
        return &kDecorationsDir;
    default:
        return nullptr;
    }
}

}  // namespace

const std::string& GetVyxDir(VyxDir dir)
{
    std::lock_guard<std::mutex> lock(g_mutex);

    std::string& home = g_cache[HomeDir];
    std::string& vyxHome = g_cache[VyxHomeDir];
    // Retried on every call while there is no vyx home, whatever is asked.
    if (vyxHome.empty()) {
        home = Vyx::detail::homeFromEnvironment();
        if (!home.empty())
            vyxHome = home + "/.vyx";
    }

    int value = static_cast<int>(dir);
    if (value < 0 || value >= kDirCount)
        return kEmpty;
    if (const std::string* constant = constantFor(dir))
        return *constant;

    std::string& slot = g_cache[dir == TempDirAlias ? TempDir : dir];
    if (slot.empty())
        slot = compute(dir, home, vyxHome);
    return slot;
}

const std::string& vyxGetPath(VyxDir dir)
{
    return GetVyxDir(dir);
}

void ResetVyxDirs()
{
    std::lock_guard<std::mutex> lock(g_mutex);
    // The shared desktop and start-menu directories outlive a reset.
    for (int i = 0; i < kDirCount; ++i) {
        if (i != SharedDesktopDir && i != SharedStartMenuDir)
            g_cache[i].clear();
    }
}
