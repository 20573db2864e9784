// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Icons for paths, desktop files, directories, file-manager locations and
// URLs.

#include "themes/icontheme_p.h"

#include "vyxdesktopentry.h"
#include "vyxfileutils.h"
#include "vyxmime.h"
#include "vyxstrings.h"

#include <cstring>
#include <sys/stat.h>

namespace {

struct Location {
    const char* name;
    const char* icon;
    const char* context;
};

// The file manager's own places, after "vyx-fm:".
const Location kLocations[] = {
    {"Computer", "computer", "Devices"},       {"Home", "user-home", "Places"},
    {"Trash", "user-trash", "Places"},         {"Desktop", "user-desktop", "Places"},
    {"Documents", "folder-txt", "Places"},     {"Music", "folder-sound", "Places"},
    {"Pictures", "folder-image", "Places"},    {"Videos", "folder-video", "Places"},
    {"Download", "folder-download", "Places"}, {"Shares", "folder-html", "Places"},
    {"Templates", "folder-green", "Places"},
};

void set(std::string* out, const std::string& value)
{
    if (out)
        *out = value;
}

// The icon of an application's desktop file, or the generic "run" icon
// when its own cannot be found.
std::string desktopFileIcon(VyxIconTheme& theme, const std::string& path, int size, std::string* context,
                            std::string* iconName)
{
    VyxDesktopEntry entry(path);
    entry.load();
    const std::string icon = entry.localIconOrFallback();
    if (!icon.empty()) {
        std::string found = theme.getIconContextAndPath(icon.c_str(), size, context);
        if (!found.empty()) {
            set(iconName, icon);
            return found;
        }
    }
    set(context, "Actions");
    set(iconName, "system-run");
    return theme.getIconPath("system-run", size, "Actions");
}

// The MIME type of a file by its name, else by its content; empty when
// neither knows it.
std::string fileType(const std::string& path)
{
    xdg_mime_lock();
    const char* mime = xdg_mime_get_mime_type_from_file_name(path.c_str());
    if (!mime || std::strcmp(mime, xdg_mime_type_unknown) == 0)
        mime = xdg_mime_get_mime_type_for_file(path.c_str(), nullptr);
    std::string type = mime && std::strcmp(mime, xdg_mime_type_unknown) != 0 ? mime : "";
    xdg_mime_unlock();
    return type;
}

}  // namespace

std::string VyxIconTheme::getURLIcon(const char* url, int size, std::string* context, std::string* iconName)
{
    set(context, "");
    set(iconName, "");
    const std::string text = url ? url : "";
    std::string defaultName = "network", defaultContext = "Places";

    if (!text.empty() && (text[0] == '/' || text[0] == '~' || text[0] == '$' || Vyx::startsWith(text, "file:"))) {
        const std::string path = ExtractPathName(text.c_str() + (Vyx::startsWith(text, "file:") ? 5 : 0));
        struct stat st;
        if (!path.empty() && stat(path.c_str(), &st) == 0) {
            if (!S_ISDIR(st.st_mode) && S_ISREG(st.st_mode) && Vyx::endsWith(path, ".desktop"))
                return desktopFileIcon(*this, path, size, context, iconName);
            if (S_ISREG(st.st_mode)) {
                const std::string mime = fileType(path);
                if (!mime.empty()) {
                    std::string found = getMimeIconPath(mime.c_str(), size);
                    if (!found.empty()) {
                        set(context, "MimeTypes");
                        if (found.find('/') != std::string::npos)
                            set(iconName, Vyx::completeBaseName(found));
                    }
                    return found;
                }
            } else if (S_ISDIR(st.st_mode)) {
                defaultName = "folder";
                const std::string directoryFile = path + "/.directory";
                VyxDesktopEntry entry(directoryFile);
                if (fileExists(directoryFile, false) && entry.load()) {
                    const std::string icon = entry.localIconOrFallback();
                    if (!icon.empty()) {
                        set(iconName, icon);
                        return getIconContextAndPath(icon.c_str(), size, context);
                    }
                }
            }
        }
    } else if (Vyx::startsWith(text, "vyx-fm:")) {
        const std::string where = text.substr(7);
        defaultName = "folder";
        for (const Location& location : kLocations) {
            if (where == location.name) {
                defaultName = location.icon;
                defaultContext = location.context;
                break;
            }
        }
    }

    // The application that handles the URL's scheme lends its icon. Text
    // without a ':' has no scheme.
    const std::string scheme = Vyx::section(text, ':', 0);
    if (!scheme.empty() && text.find(':') != std::string::npos) {
        std::string found = getMimeIconPath(("x-scheme-handler/" + scheme).c_str(), size);
        if (!found.empty()) {
            set(context, "");
            std::string name = Vyx::completeBaseName(found);
            if (getIconPath(name.c_str(), size, nullptr).empty())
                name.clear();
            set(iconName, name);
            return found;
        }
    }

    std::string found = getIconPath(defaultName.c_str(), size, defaultContext.c_str());
    if (!found.empty()) {
        set(iconName, defaultName);
        set(context, defaultContext);
    }
    return found;
}

std::string VyxIconTheme::getURLIconPath(const char* url, int size)
{
    return getURLIcon(url, size, nullptr, nullptr);
}

std::string VyxIconTheme::getURLIconName(const char* url, std::string* context)
{
    std::string name;
    getURLIcon(url, 32, context, &name);
    return name;
}
