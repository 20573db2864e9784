// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The applications for a MIME type in the user's order of preference: the
// mimeapps.list files first, then the installed applications.

#include "vyxmime.h"

#include "core/inireader_p.h"
#include "desktopentry/desktopid_p.h"
#include "desktopentry/mimealiases_p.h"
#include "mime/mimeapps_p.h"

#include <algorithm>
#include <cstdlib>
#include <deque>
#include <set>

using namespace Vyx::detail;

namespace {

const char kDefaults[] = "Default Applications";
const char kAdded[] = "Added Associations";
const char kRemoved[] = "Removed Associations";

struct ListFile {
    std::string path;
    IniReader ini;
    bool loaded = false;
    // Added and removed associations count only in lists named exactly
    // "mimeapps.list"; a desktop-specific list may only choose defaults.
    bool general = false;
};

std::vector<std::string> idsOf(const ListFile& list, const char* group, const std::string& type)
{
    if (!list.loaded)
        return {};
    return Vyx::split(list.ini.text(group, type.c_str()).c_str(), ";");
}

bool usableHere(const std::string& path)
{
    VyxDesktopEntry entry(path);
    return entry.isLoaded() && entry.type() == "Application" && !entry.hidden() && entry.isSuitable();
}

class Collector {
public:
    explicit Collector(std::deque<ListFile>& lists) : m_lists(lists) { }

    // The answers for one type known under several names (its canonical
    // name and aliases): a list may use any of them.
    std::vector<VyxMimeApp> forType(const std::vector<std::string>& names)
    {
        m_seen.clear();
        m_result.clear();
        std::set<std::string> removed;
        for (const ListFile& list : m_lists) {
            // A removal counts for its own list too: an id both added and
            // removed in one file is left out.
            for (const std::string& type : names) {
                if (list.general) {
                    for (const std::string& id : idsOf(list, kRemoved, type))
                        removed.insert(id);
                }
            }
            for (const char* group : {kDefaults, kAdded}) {
                if (group == kAdded && !list.general)
                    continue;
                for (const std::string& type : names) {
                    for (const std::string& id : idsOf(list, group, type))
                        offer(id, desktopIdPath(id), type, list.path, group, removed);
                }
            }
        }
        const std::string& type = names.front();
        for (const std::string& path :
             GetDesktopEntryPathForMime(type.c_str(), Vyx::tagged_bool<AllDesktopEntries_tag>(true))) {
            std::string id = desktopIdOf(path);
            // The id's own file, which shadows a copy in a later directory.
            std::string own = desktopIdPath(id);
            offer(id, own.empty() ? path : own, type, std::string(), "installed", removed);
        }
        return std::move(m_result);
    }

private:
    void offer(const std::string& id, const std::string& path, const std::string& type, const std::string& source,
               const char* group, const std::set<std::string>& removed)
    {
        if (id.empty() || removed.count(id) || !m_seen.insert(id).second)
            return;
        if (path.empty() || !usableHere(path))
            return;
        m_result.push_back({id, path, type, source, group});
    }

    std::deque<ListFile>& m_lists;
    std::set<std::string> m_seen;
    std::vector<VyxMimeApp> m_result;
};

// The types to fall back on, in order: the canonical name and the aliases,
// then the parents, breadth first, with text/plain under every text type.
std::vector<std::string> fallbackTypes(const std::string& mime)
{
    std::vector<std::string> types;
    auto add = [&types](const std::string& type) {
        for (const std::string& known : types) {
            if (known == type)
                return;
        }
        types.push_back(type);
    };
    add(mime);
    std::string canonical = xdg_mime_unalias_mime_type(mime.c_str());
    add(canonical);
    for (const std::string& alias : GetMimeAliases(canonical.c_str()))
        add(alias);
    // Bounded: a loop of parents in a damaged database must not run forever.
    for (size_t i = 0; i < types.size() && types.size() < 64; ++i) {
        if (char** parents = xdg_mime_list_mime_parents(types[i].c_str())) {
            for (char** p = parents; *p; ++p)
                add(*p);
            std::free(parents);
        }
        if (types[i].compare(0, 5, "text/") == 0)
            add("text/plain");
    }
    return types;
}

}  // namespace

std::vector<VyxMimeApp> GetPreferredApplications(const char* mime)
{
    if (!mime || !xdg_mime_is_valid_mime_type(mime))
        return {};
    FillDesktopEntriesDirArray();
    std::deque<ListFile> lists;  // the documents stay where they were loaded
    for (const std::string& path : findMimeappsLists(true)) {
        ListFile& list = lists.emplace_back();
        list.path = path;
        // Opening a FIFO planted under a list's name would wait for a writer.
        list.loaded = list.ini.loadFile(path);  // refuses a FIFO or directory as missing
        list.general = Vyx::fileName(path) == "mimeapps.list";
    }
    Collector collector(lists);
    // The type itself first, under its canonical name and its aliases (from
    // the catalogue's alias table, already read): most types have an answer,
    // and the fallbacks need the whole MIME database read.
    std::vector<std::string> names {mime};
    for (const auto& [canonical, alias] : mimeAliasTable()) {
        if (alias == mime && canonical != mime) {
            names.insert(names.begin(), std::string(canonical));
            break;
        }
    }
    for (const std::string& alias : GetMimeAliases(names.front().c_str())) {
        if (std::find(names.begin(), names.end(), alias) == names.end())
            names.push_back(alias);
    }
    std::vector<VyxMimeApp> own = collector.forType(names);
    if (!own.empty())
        return own;
    for (const std::string& type : fallbackTypes(mime)) {
        if (std::find(names.begin(), names.end(), type) != names.end())
            continue;
        std::vector<VyxMimeApp> found = collector.forType({type});
        if (!found.empty())
            return found;
    }
    return {};
}
