// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Icons for MIME types, and for bare names whose context is guessed from
// the way they are spelt.

#include "themes/icontheme_p.h"

#include "core/diag_p.h"

#include "vyxdesktopentry.h"
#include "vyxmime.h"
#include "vyxstrings.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <initializer_list>

namespace {

using Words = std::initializer_list<const char*>;

// A group of icon names that share their likely contexts: names beginning
// with a prefix, equal to a word or ending with a suffix.
struct NameGroup {
    Words contexts;
    Words prefixes;
    Words words;
    Words suffixes;

    bool holds(const std::string& name) const
    {
        for (const char* prefix : prefixes) {
            if (Vyx::startsWith(name, prefix))
                return true;
        }
        for (const char* word : words) {
            if (name == word)
                return true;
        }
        for (const char* suffix : suffixes) {
            if (Vyx::endsWith(name, suffix))
                return true;
        }
        return false;
    }
};

const NameGroup kNameGroups[] = {
    {{"Applications"}, {"accessories-", "preferences-", "utilities-", "vyx-", "package_"}, {"package"}, {}},
    {{"Places", "FileSystems"},
     {"folder-", "user-", "folder_", "trashcan"},
     {"folder", "desktop", "exec", "www", "ftp", "services", "network", "network_local"},
     {}},
    {{"MimeTypes"},
     {"application-", "text-", "image-", "audio-", "video-", "x-", "file_", "mime_", "source_", "ooo_", "font-",
      "x-office-", "package-"},
     {"unknown", "mime_empty", "shellscript", "tgz", "html", "txt", "binary", "image", "sound", "video", "pdf",
      "postscript"},
     {}},
    {{"Devices"},
     {"audio-", "camera-", "compute", "drive-", "input-", "media-", "multimedia-", "network-", "printer-", "video-"},
     {"printer", "printer1", "print_printer", "scanner", "tv", "tablet"},
     {"_mount", "_unmount"}},
    {{"Actions"},
     {"view-",      "window-",  "zoom-",     "go-",       "align-",      "arrow-",  "edit-",    "tab-",
      "text-",      "tools-",   "list-",     "call-",     "draw-",       "help-",   "format-",  "debug-",
      "transform-", "dialog-",  "document-", "bookmark-", "distribute-", "flag-",   "games-",   "mail-",
      "media-",     "im-",      "insert-",   "irc-",      "office-",     "page-",   "run-",     "resource-",
      "project-",   "snap-",    "stroke-",   "system-",   "view_",       "viewmag", "bookmark", "button_",
      "mail_",      "connect_", "mix_",      "player_",   "text_",       "file",    "message",  "led"},
     {"apply", "cancel", "ok", "no", "attach", "configure", "back", "forward", "top", "bottom", "gohome", "help",
      "lock", "wizard", "exit", "run", "undo", "redo"},
     {}},
    {{"Categories"}, {"applications-", "preferences-"}, {}, {}},
    {{"Emblems"}, {"emblem-"}, {}, {}},
    {{"Emotes"}, {"face-"}, {}, {}},
    {{"International"}, {"flag-"}, {}, {}},
    {{"Status"},
     {"dialog-", "user-", "network-", "audio-vol", "battery-", "task-", "sync-", "security-", "weather-"},
     {},
     {}},
};

// Whether a found file is a theme's own (not one lying loose in the icon
// directory or among the pixmaps, which only serve when nothing better does).
bool insideATheme(const std::string& path)
{
    static const char kIcons[] = "/usr/share/icons/";
    if (Vyx::startsWith(path, kIcons))
        return path.find('/', sizeof kIcons - 1) != std::string::npos;
    return !Vyx::startsWith(path, "/usr/share/pixmaps");
}

}  // namespace

std::string VyxIconTheme::findMimeIconNameXDG(const char* mime, SearchIconNameType type) const
{
    if (!mime || !*mime)
        return std::string();
    // The database's texts live only while it is held.
    xdg_mime_lock();
    const char* name = type == MimeGenericIconName ? xdg_mime_get_generic_icon(mime) : xdg_mime_get_icon(mime);
    if (!name && type != MimeIconName && type != MimeGenericIconName)
        name = xdg_mime_get_generic_icon(mime);
    std::string result = name ? name : "";
    xdg_mime_unlock();
    return result;
}

std::string VyxIconTheme::getMimeIconNameXDG(const char* mime) const
{
    return findMimeIconNameXDG(mime, MimeIconName);
}

std::string VyxIconTheme::getMimeGenericIconNameXDG(const char* mime) const
{
    return findMimeIconNameXDG(mime, MimeGenericIconName);
}

std::string VyxIconTheme::getMimeIconNameSimple(const char* mime) const
{
    std::string name = mime ? mime : "";
    const size_t slash = name.find('/');
    if (slash == std::string::npos)
        return std::string();
    name[slash] = '-';
    return name;
}

std::string VyxIconTheme::getMimeIconPath(const char* mime, int size)
{
    if (!mime || !*mime)
        return std::string();
    std::string found;
    std::vector<VyxDesktopEntry> assigned =
        GetAssignedDesktopEntryForMime(mime, Vyx::tagged_bool<AllDesktopEntries_tag>(false));
    // That document viewer's own icon is never shown for the documents.
    if (!assigned.empty() && !Vyx::contains(assigned[0].filePath().c_str(), "qpdfview.desktop") &&
        !Vyx::startsWith(assigned[0].exec(), "qpdfview ")) {
        const std::string& icon = assigned[0].localIconOrFallback();
        if (icon.find('/') != std::string::npos) {
            found = icon;
        } else if (!icon.empty()) {
            for (const char* context : {"Applications", "MimeTypes", static_cast<const char*>(nullptr)}) {
                found = getIconPath(icon.c_str(), size, context);
                if (!found.empty())
                    break;
            }
        }
    }
    for (int step = 0; step < 3 && found.empty(); ++step) {
        const std::string name = step == 0   ? getMimeIconNameXDG(mime)
                                 : step == 1 ? getMimeIconNameSimple(mime)
                                             : getMimeGenericIconNameXDG(mime);
        if (name.empty())
            continue;
        found = name.find('/') != std::string::npos ? name : getIconPath(name.c_str(), size, "MimeTypes");
    }
    if (found.empty()) {
        const std::string media = mime;
        const size_t slash = media.find('/');
        if (slash != std::string::npos)
            found = getIconPath((media.substr(0, slash) + "-x-generic").c_str(), size, "MimeTypes");
    }
    if (found.empty())
        Vyx::detail::iconTrace(Vyx::detail::kToolPrefix, "icon theme %s error: getMimeIcon(mimeName=%s,iconSize=%d)\n",
                               d->themeName.c_str(), mime, size);
    return found;
}

std::string VyxIconTheme::getMimeIconName(const char* mime)
{
    const std::string found = getMimeIconPath(mime, 32);
    return found.empty() ? found : Vyx::completeBaseName(found);
}

std::string VyxIconTheme::getIconContextAndPath(const char* name, int size, std::string* context)
{
    if (context)
        context->clear();
    if (!name || !*name)
        return std::string();
    if (std::strchr(name, '/') || Vyx::detail::hasImageExtension(name))
        return CheckFullPath(name, context);

    const std::string text = name;
    std::vector<std::string> tried;
    for (const NameGroup& group : kNameGroups) {
        if (!group.holds(text))
            continue;
        for (const char* groupContext : group.contexts) {
            std::string found = getIconPath(name, size, groupContext);
            if (!found.empty()) {
                if (context)
                    *context = groupContext;
                return found;
            }
            tried.emplace_back(groupContext);
        }
    }
    std::string fallback;
    for (const Vyx::detail::IconContext& known : Vyx::detail::kIconContexts) {
        if (std::find(tried.begin(), tried.end(), known.name) != tried.end())
            continue;
        std::string found = getIconPath(name, size, known.name);
        if (found.empty())
            continue;
        if (insideATheme(found)) {
            if (context)
                *context = known.name;
            return found;
        }
        fallback = found;  // a later loose file replaces an earlier one
    }
    return fallback;
}
