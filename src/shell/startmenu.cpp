// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The start-menu builder: the folder tree of the start-menu directories,
// the categorized folders of the catalogue, and the installed applications
// placed by their Categories.

#include "vyxstartmenu.h"

#include "vyxdirs.h"
#include "vyxfileutils.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <set>
#include <strings.h>

namespace {

// Deep enough for any menu, and a bound on the walk whatever the tree.
constexpr int kMaxFolderDepth = 5;
constexpr const char kDirectoryFile[] = "/.directory";

const auto kFilesOnly = Vyx::tagged_bool<FilesOnly_tag>(true);

bool isInside(const std::string& path, const std::vector<std::string>& dirs)
{
    return std::any_of(dirs.begin(), dirs.end(), [&](const std::string& dir) {
        return path.size() > dir.size() && Vyx::startsWith(path, dir) && path[dir.size()] == '/';
    });
}

// Fills folder from its ".directory" file, also when the folder is hidden;
// false when it is not to be shown. A file that is unreadable or describes
// something else still marks a folder, which then keeps its directory name
// and nothing more.
bool describe(MenuFolderDsc& folder, const std::string& directoryFile)
{
    folder.localName = folder.name;
    VyxDesktopEntry description(directoryFile);
    if (!description.isLoaded() || description.type() != "Directory")
        return true;
    folder.directoryFile = directoryFile;
    if (!description.localNameOrFallback().empty())
        folder.localName = description.localNameOrFallback();
    folder.icon = description.localIconOrFallback();
    folder.sortOrder = description.sortOrder();
    folder.categories = description.categories();
    return description.isDisplayable() && description.isSuitable();
}

bool isMenuItem(const VyxDesktopEntry& entry)
{
    return (entry.type() == "Application" || entry.type() == "Link") && entry.isDisplayable() && entry.isSuitable();
}

bool listsAny(const std::vector<std::string>& list, const std::vector<std::string>& wanted)
{
    return std::any_of(list.begin(), list.end(), [&](const std::string& item) {
        return std::find(wanted.begin(), wanted.end(), item) != wanted.end();
    });
}

MenuFolderDsc* findChild(MenuFolderDsc& folder, const std::string& name)
{
    for (MenuFolderDsc& child : folder.folders) {
        if (child.name == name)
            return &child;
    }
    return nullptr;
}

// The desktop-file id: the path below the application directory that holds
// it, "/" read as "-" (the deepest directory wins when they nest).
std::string desktopFileId(const std::string& path, const std::vector<std::string>& appDirs)
{
    const std::string* base = nullptr;
    for (const std::string& dir : appDirs) {
        if (isInside(path, {dir}) && (!base || dir.size() > base->size()))
            base = &dir;
    }
    std::string id = base ? path.substr(base->size() + 1) : Vyx::fileName(path);
    std::replace(id.begin(), id.end(), '/', '-');
    return id;
}

class MenuBuilder {
public:
    // layers: the start-menu directories, the user's first.
    explicit MenuBuilder(std::vector<std::string> layers) : m_layers(std::move(layers)) { }

    MenuFolderDsc build()
    {
        MenuFolderDsc root;
        for (const std::string& dir : m_layers) {
            if (fileExists(dir + kDirectoryFile, false)) {
                describe(root, dir + kDirectoryFile);  // the root is shown whatever its file says
                break;
            }
        }
        fillFolder(root, m_layers, 0);
        addCategorizedFolders(root);
        placeApplications(root);
        return root;
    }

private:
    // Builds the folder that layers holds, one directory per layer that has
    // it, the user's first: the first layer's ".directory" describes it, the
    // first file or subfolder of a name wins, hidden or not.
    void fillFolder(MenuFolderDsc& folder, const std::vector<std::string>& layers, int depth)
    {
        std::set<std::string> taken;
        for (const std::string& dir : layers) {
            std::vector<std::string> files;
            GetFileList(&files, dir.c_str(), 0, "*.desktop", kFilesOnly);
            std::sort(files.begin(), files.end());
            for (const std::string& file : files) {
                if (!taken.insert(Vyx::fileName(file)).second)
                    continue;
                VyxDesktopEntry entry(file);
                if (isMenuItem(entry))
                    folder.applications.push_back(std::move(entry));
            }
        }
        if (depth >= kMaxFolderDepth)
            return;

        // A subfolder is a directory with a ".directory" file in it.
        std::map<std::string, std::vector<std::string>> subfolders;
        std::vector<std::string> names;
        for (const std::string& dir : layers) {
            std::vector<std::string> descriptions;
            GetFileList(&descriptions, dir.c_str(), 1, ".directory", kFilesOnly);
            for (std::string& description : descriptions) {
                description.resize(description.size() - std::strlen(kDirectoryFile));
                if (description.size() <= dir.size())
                    continue;  // the folder's own
                std::string name = Vyx::fileName(description);
                std::vector<std::string>& subLayers = subfolders[name];
                if (subLayers.empty())
                    names.push_back(name);
                subLayers.push_back(description);
            }
        }
        for (const std::string& name : names) {
            const std::vector<std::string>& subLayers = subfolders[name];
            MenuFolderDsc child;
            child.name = name;
            if (describe(child, subLayers.front() + kDirectoryFile)) {
                fillFolder(child, subLayers, depth + 1);
                folder.folders.push_back(std::move(child));
            } else {
                hide(child, depth == 0);
            }
        }
    }

    // A hidden folder takes its applications with it: those of its
    // categories go to no "Other", and a top-level one keeps a categorized
    // folder of its name away.
    void hide(const MenuFolderDsc& folder, bool topLevel)
    {
        m_hiddenCategories.insert(m_hiddenCategories.end(), folder.categories.begin(), folder.categories.end());
        if (topLevel)
            m_topLevelNames.insert(folder.name);
    }

    void addCategorizedFolders(MenuFolderDsc& root)
    {
        for (const std::string& path : GetAllCategorizedFolderList()) {
            // A shared start menu below an application directory is a tree
            // of its own, already in the menu.
            if (isInside(path, m_layers))
                continue;
            MenuFolderDsc folder;
            folder.name = Vyx::fileName(path);
            // The first folder of a name, the user's before the system's, wins.
            if (folder.name.empty() || !m_topLevelNames.insert(folder.name).second)
                continue;
            bool shown = describe(folder, path + kDirectoryFile);
            if (!shown) {
                hide(folder, true);
            } else if (MenuFolderDsc* existing = findChild(root, folder.name)) {
                for (const std::string& category : folder.categories) {
                    if (std::find(existing->categories.begin(), existing->categories.end(), category) ==
                        existing->categories.end())
                        existing->categories.push_back(category);
                }
            } else {
                root.folders.push_back(std::move(folder));
            }
        }
    }

    static void collectClaimants(MenuFolderDsc& folder, const std::vector<std::string>& categories,
                                 std::vector<MenuFolderDsc*>& claimants)
    {
        if (listsAny(folder.categories, categories))
            claimants.push_back(&folder);
        for (MenuFolderDsc& child : folder.folders)
            collectClaimants(child, categories, claimants);
    }

    void placeApplications(MenuFolderDsc& root)
    {
        std::vector<VyxDesktopEntry> unclaimed;
        std::set<std::string> ids;
        const std::vector<std::string> appDirs = GetAllAppDesktopEntrySearchPaths();
        for (VyxDesktopEntry& entry : GetAllAppDesktopEntries()) {
            if (isInside(entry.filePath(), m_layers))
                continue;
            if (!ids.insert(desktopFileId(entry.filePath(), appDirs)).second || !isMenuItem(entry))
                continue;
            std::vector<MenuFolderDsc*> claimants;
            collectClaimants(root, entry.categories(), claimants);
            if (claimants.empty()) {
                if (!listsAny(entry.categories(), m_hiddenCategories))
                    unclaimed.push_back(std::move(entry));
                continue;
            }
            // Entries are not copyable; the other folders get one loaded anew.
            for (size_t i = 1; i < claimants.size(); ++i)
                claimants[i]->applications.emplace_back(entry.filePath());
            claimants.front()->applications.push_back(std::move(entry));
        }
        if (unclaimed.empty())
            return;
        MenuFolderDsc* other = findChild(root, "Other");
        if (!other) {
            if (m_topLevelNames.count("Other"))
                return;  // hidden on purpose
            MenuFolderDsc folder;
            folder.name = folder.localName = "Other";
            folder.icon = "applications-other";
            root.folders.push_back(std::move(folder));
            other = &root.folders.back();
        }
        for (VyxDesktopEntry& entry : unclaimed)
            other->applications.push_back(std::move(entry));
    }

    const std::vector<std::string> m_layers;
    std::vector<std::string> m_hiddenCategories;
    std::set<std::string> m_topLevelNames;  // hidden ones, then categorized ones
};

// Ignoring case as strcasecmp does: ASCII letters fold, the bytes of other
// UTF-8 characters compare as they are (code-point order). No collation:
// the order must not depend on the caller's locale settings.
bool lessByName(const std::string& a, const std::string& b)
{
    int order = strcasecmp(a.c_str(), b.c_str());
    return order != 0 ? order < 0 : a < b;
}

// The place of a child in sortOrder: its index, or past the end when it is
// not listed.
size_t rank(const std::vector<std::string>& sortOrder, const std::string& name, const char* suffix)
{
    for (size_t i = 0; i < sortOrder.size(); ++i) {
        const std::string& listed = sortOrder[i];
        if (listed == name || listed + suffix == name || listed == name + suffix)
            return i;
    }
    return sortOrder.size();
}

// Sorts the tree and drops empty folders (unless kept); true when folder
// holds any application.
bool arrange(MenuFolderDsc& folder, bool keepEmpty)
{
    bool filled = !folder.applications.empty();
    for (auto it = folder.folders.begin(); it != folder.folders.end();) {
        bool childFilled = arrange(*it, keepEmpty);
        filled = filled || childFilled;
        it = childFilled || keepEmpty ? it + 1 : folder.folders.erase(it);
    }

    const std::vector<std::string>& order = folder.sortOrder;
    std::stable_sort(folder.folders.begin(), folder.folders.end(), [&](const MenuFolderDsc& a, const MenuFolderDsc& b) {
        size_t ra = rank(order, a.name, "/"), rb = rank(order, b.name, "/");
        if (ra != rb)
            return ra < rb;
        if (a.localName != b.localName)
            return lessByName(a.localName, b.localName);
        return a.name < b.name;
    });
    std::vector<std::pair<std::string, VyxDesktopEntry*>> apps;
    for (VyxDesktopEntry& entry : folder.applications)
        apps.emplace_back(Vyx::fileName(entry.filePath()), &entry);
    std::stable_sort(apps.begin(), apps.end(), [&](const auto& a, const auto& b) {
        size_t ra = rank(order, a.first, ".desktop"), rb = rank(order, b.first, ".desktop");
        if (ra != rb)
            return ra < rb;
        const std::string &na = a.second->localNameOrFallback(), &nb = b.second->localNameOrFallback();
        if (na != nb)
            return lessByName(na, nb);
        return a.first < b.first;
    });
    std::vector<VyxDesktopEntry> sorted;
    sorted.reserve(apps.size());
    for (auto& app : apps)
        sorted.push_back(std::move(*app.second));
    folder.applications = std::move(sorted);
    return filled;
}

}  // namespace

MenuFolderDsc CreateStartMenu(Vyx::tagged_bool<IncludeEmptyFolders_tag> includeEmptyFolders)
{
    std::vector<std::string> layers;
    for (const std::string& dir : {GetVyxDir(StartMenuDir), GetVyxDir(SharedStartMenuDir)}) {
        // A home-less process has "/startmenu" as its start-menu directory:
        // not a menu of anyone's.
        if (!dir.empty() && dir != "/startmenu" && std::find(layers.begin(), layers.end(), dir) == layers.end())
            layers.push_back(dir);
    }

    MenuFolderDsc root = MenuBuilder(std::move(layers)).build();
    arrange(root, static_cast<bool>(includeEmptyFolders));
    return root;
}
