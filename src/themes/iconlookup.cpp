// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "themes/icontheme_p.h"

#include "core/diag_p.h"
#include "vyxdirs.h"
#include "vyxfileutils.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstring>
#include <unistd.h>

namespace Vyx::detail {

bool hasImageExtension(const char* name)
{
    // ".jpeg" and ".tiff" are longer than three characters: such names are
    // searched as bare names.
    if (!fileNameExtension(name, 3))
        return false;
    const char* dot = std::strrchr(name, '.');
    for (const char* extension : {".png", ".svg", ".jpg", ".jpeg", ".xpm", ".ppm", ".pgm", ".tiff", ".eif"}) {
        if (std::strcmp(dot, extension) == 0)
            return true;
    }
    return false;
}

const IconContext kIconContexts[12] = {
    {"/apps/", "Applications"},     {"/places/", "Places"},           {"/mimetypes/", "MimeTypes"},
    {"/actions/", "Actions"},       {"/status/", "Status"},           {"/devices/", "Devices"},
    {"/categories/", "Categories"}, {"/emblems/", "Emblems"},         {"/emotes/", "Emotes"},
    {"/intl/", "International"},    {"/filesystems/", "FileSystems"}, {"/animations/", "Animations"}};

}  // namespace Vyx::detail

namespace {

using Vyx::detail::diag;
using Vyx::detail::IconProbe;
using Vyx::detail::iconSwitches;
using Vyx::detail::iconTrace;
using Vyx::detail::kLibraryPrefix;
using Vyx::detail::kPngFile;
using Vyx::detail::kSvgFile;
using Vyx::detail::kToolPrefix;
using Vyx::detail::kXpmFile;

// The search of one size directory (VyxIconThemeSubdir::findIcon) with the
// name already set in probe; dirs[0] is the directory's listing id under
// themePath and dirs[1 + k] under otherPaths[k] (null: none is listed).
std::string findIconWith(const VyxIconThemeSubdir& subdir, IconProbe& probe, const char* themePath,
                         const char* iconName, int size, const char* context,
                         const std::vector<std::string>& otherPaths, const uint32_t* dirs)
{
    if (context && *context && !subdir.context().empty() && subdir.context() != context)
        return std::string();
    if (subdir.size() > 0 && !subdir.matchesSize(size))
        return std::string();
    const bool asIs = probe.carriesExtension();
    auto image = [&](size_t copy, std::string_view base) {
        const uint32_t dir = dirs ? dirs[copy] : IconProbe::kNoDir;
        return asIs ? probe.asIs(dir, base, subdir.path())
                    : probe.withExtension(dir, base, subdir.path(), {kPngFile, kSvgFile});
    };
    std::string found = image(0, themePath);
    if (!found.empty())
        return found;
    for (size_t k = 0; k < otherPaths.size(); ++k) {
        // Guarded here too: the pid is a system call on every pass otherwise.
        if (iconSwitches().debug)
            iconTrace(kLibraryPrefix, "check spreaded icon theme dir/path %s/%s/%s by pid %d\n", otherPaths[k].c_str(),
                      subdir.path().c_str(), iconName, int(getpid()));
        found = image(1 + k, otherPaths[k]);
        if (!found.empty())
            return found;
    }
    return std::string();
}

bool isMimeOrApplications(const char* context)
{
    return context && (std::strcmp(context, "MimeTypes") == 0 || std::strcmp(context, "Applications") == 0);
}

// One flag for both cache messages, for the whole process.
std::atomic<bool> g_cacheComplaintMade {false};

}  // namespace

bool VyxIconThemeSubdir::matchesSize(int size) const
{
    // Unlike the common convention, a directory without a Type serves no
    // size: kept on purpose.
    switch (d->kind) {
    case VyxIconThemeSubdirPrivate::Kind::Fixed:
        return size == d->size;
    case VyxIconThemeSubdirPrivate::Kind::Scalable:
        return d->minSize <= size && size <= d->maxSize;
    case VyxIconThemeSubdirPrivate::Kind::Threshold:
        return d->size - d->threshold <= size && size <= d->size + d->threshold;
    case VyxIconThemeSubdirPrivate::Kind::None:
        break;
    }
    return false;
}

std::string VyxIconThemeSubdir::findIcon(const char* themePath, const char* iconName, int size, const char* context,
                                         const std::vector<std::string>& otherPaths) const
{
    const std::string name = iconName;
    IconProbe probe;
    probe.setName(name);
    return findIconWith(*this, probe, themePath, iconName, size, context, otherPaths, nullptr);
}

std::string VyxIconTheme::CheckFullPath(const char* name, std::string* context)
{
    if (context)
        context->clear();
    std::string found;
    if (!name)
        return found;
    if (name[0] == '/') {
        if (fileExists(name, false))
            found = name;
    } else {
        for (const std::string& dir : GetThemesSearchDirs()) {
            std::string candidate = dir + "/" + name;
            if (fileExists(candidate, false)) {
                found = candidate;
                break;
            }
        }
    }
    if (context && !found.empty()) {
        for (const Vyx::detail::IconContext& known : Vyx::detail::kIconContexts) {
            if (found.find(known.fragment) != std::string::npos) {
                *context = known.name;
                break;
            }
        }
    }
    return found;
}

std::shared_ptr<IconThemeLayout> VyxIconThemePrivate::fileLayout()
{
    std::lock_guard<std::mutex> lock(layoutMutex);
    if (layout)
        return layout;
    auto list = std::make_shared<Vyx::detail::IconDirList>();
    auto made = std::make_shared<IconThemeLayout>(list);
    // Each subdir's place in the cache's directory list, by name.
    std::vector<std::pair<std::string_view, int32_t>> cached;
    if (cache && cache->isValid()) {
        list->cache = cache.get();
        const std::vector<Vyx::detail::SeenDirectory>& names = cache->directories();
        cached.reserve(names.size());
        for (size_t i = 0; i < names.size(); ++i)
            cached.emplace_back(names[i].first, int32_t(i));
        std::sort(cached.begin(), cached.end());
        list->idOfCacheIndex.assign(names.size(), IconProbe::kNoDir);
    }
    const uint16_t own = list->addBase(path);
    std::vector<uint16_t> others;
    for (const std::string& other : otherPaths)
        others.push_back(list->addBase(other));
    made->stride = 1 + otherPaths.size();
    made->dirs.reserve(subdirs.size() * made->stride);
    for (const VyxIconThemeSubdir& subdir : subdirs) {
        const std::string_view rel = subdir.path();
        auto listed = std::lower_bound(cached.begin(), cached.end(), std::make_pair(rel, int32_t(-1)));
        const int32_t index =
            listed != cached.end() && listed->first == rel ? listed->second : Vyx::detail::IconDirList::kNotInCache;
        const uint32_t id = list->add(own, rel, index);
        if (index >= 0)
            list->idOfCacheIndex[size_t(index)] = id;
        made->dirs.push_back(id);
        for (uint16_t other : others)
            made->dirs.push_back(list->add(other, rel, Vyx::detail::IconDirList::kOutsideTheme));
    }
    made->outOfThemes = {{"/usr/share/pixmaps", 0}, {"/usr/share/icons", 0}, {"/usr/local/share/icons", 0}};
    // The home's own icons as every desktop installs them there, not under
    // a data home set elsewhere.
    made->outOfThemes.emplace_back(GetVyxDir(HomeDir) + "/.local/share/icons", 0);
    for (auto& [dir, id] : made->outOfThemes)
        id = list->add(list->addBase(dir), {}, Vyx::detail::IconDirList::kOutsideTheme);
    layout = made;
    return layout;
}

const std::vector<uint32_t>& IconThemeLayout::serving(int size, const std::vector<VyxIconThemeSubdir>& subdirs)
{
    std::lock_guard<std::mutex> lock(m_servingMutex);
    for (const auto& [known, list] : m_serving) {
        if (known == size)
            return *list;
    }
    // A caller asking ever new sizes gets the list of every subdir once
    // the lists of the usual few sizes are made: a list in use by another
    // pass cannot be dropped, and the loop tests each size anyway.
    const bool every = m_serving.size() >= kServingLists;
    if (every && !m_serving.empty() && m_serving.back().first == kEverySize)
        return *m_serving.back().second;
    auto list = std::make_unique<std::vector<uint32_t>>();
    for (size_t i = 0; i < subdirs.size(); ++i) {
        // A subdir of size 0 passes every size.
        if (every || subdirs[i].size() <= 0 || subdirs[i].matchesSize(size))
            list->push_back(uint32_t(i));
    }
    m_serving.emplace_back(every ? kEverySize : size, std::move(list));
    return *m_serving.back().second;
}

void VyxIconThemePrivate::resetLayout()
{
    std::lock_guard<std::mutex> lock(layoutMutex);
    layout.reset();
}

std::string VyxIconThemePrivate::searchThemeCache(IconProbe& probe, const char* iconName, int size)
{
    if (!cache || !cache->isValid()) {
        if (!g_cacheComplaintMade.exchange(true))
            diag(kLibraryPrefix, "invalid cache of %s\n", path.c_str());
        return std::string();
    }
    const std::vector<Vyx::detail::IconCacheImage>& images = probe.cacheImages();
    if (!cache->isValid()) {
        if (!g_cacheComplaintMade.exchange(true))
            diag(kLibraryPrefix, "invalid read cache of %s, empty=%d\n", path.c_str(), images.empty() ? 1 : 0);
        return std::string();
    }
    char prefix[16];
    const size_t prefixLength = size_t(std::to_chars(prefix, prefix + sizeof prefix, size).ptr - prefix);
    const size_t nameLength = std::strlen(iconName);
    // A name of four characters or fewer, or one with a three-letter
    // extension, is taken as it is.
    const bool appendExtension = nameLength >= 5 && iconName[nameLength - 4] != '.';
    for (const Vyx::detail::IconCacheImage& image : images) {
        // A plain prefix test: size 4 also picks the 48x48 directories.
        if (std::strncmp(image.dir, prefix, prefixLength) != 0)
            continue;
        const std::vector<uint32_t>& ids = layout->list->idOfCacheIndex;
        const uint32_t id = image.index < ids.size() ? ids[image.index] : IconProbe::kNoDir;
        // Only the first directory of the size is tried.
        return appendExtension ? probe.withExtension(id, path, image.dir, {kPngFile, kSvgFile})
                               : probe.asIs(id, path, image.dir);
    }
    return std::string();
}

std::string VyxIconThemePrivate::searchOutOfThemes(IconProbe& probe, const char* iconName)
{
    const size_t length = std::strlen(iconName);
    if (std::strchr(iconName, '.') && (length < 5 || iconName[length - 4] == '.'))
        return std::string();
    const std::string name = iconName;
    probe.setName(name);
    for (size_t i = 0; i < layout->outOfThemes.size(); ++i) {
        const auto& [dir, id] = layout->outOfThemes[i];
        // The last two are searched only where they exist.
        if (i >= 2 && !probe.directoryExists(id, dir))
            continue;
        std::string found = probe.withExtension(id, dir, {}, {kPngFile, kSvgFile, kXpmFile});
        if (!found.empty())
            return found;
    }
    return std::string();
}

std::string VyxIconThemePrivate::searchParents(const std::string& searchName, const char* iconName, int size,
                                               const char* iconContext)
{
    const Vyx::detail::IconSwitches& switches = iconSwitches();
    VyxIconTheme* hicolor = nullptr;
    std::string found;
    for (VyxIconTheme& parent : parents) {
        if (!inheritedBy.empty() && inheritedBy == parent.themeName())
            continue;
        if (switches.hicolorLast == 1 && Vyx::ciEqual(parent.name(), "hicolor")) {
            hicolor = &parent;
            continue;
        }
        iconTrace(
            kToolPrefix,
            "icon theme %s failed: getIcon(iconName=%s,iconSize=%d,iconContext=%s) - check in inherited theme %s\n",
            name.c_str(), iconName, size, iconContext ? iconContext : "", parent.name().c_str());
        found = parent.getIconPath(searchName.c_str(), size, iconContext);
        if (found.empty())
            continue;
        // An answer from hicolor through another parent may be bettered by
        // a later parent's own icon.
        if (switches.hicolorLast != 1 || parents.size() <= 1 || !Vyx::ciContains(found, "/hicolor/"))
            return found;
    }
    // hicolor, kept for last, has the final word when it is a parent.
    if (hicolor)
        return hicolor->getIconPath(searchName.c_str(), size, iconContext);
    return found;
}

std::string VyxIconThemePrivate::searchPass(IconProbe& probe, const std::string& searchName, const char* iconName,
                                            int iconSize, int size, const char* iconContext, bool generic)
{
    const Vyx::detail::IconSwitches& switches = iconSwitches();
    probe.setName(searchName);
    std::string found = searchThemeCache(probe, iconName, size);
    if (!found.empty())
        return found;
    // Most directories cannot hold the name: only those of the size are
    // asked about, so that a first lookup reads no other. (Not while
    // debugging: each look has its message.)
    const bool skipUnlisted = !switches.debug;
    // The others: both tries below would refuse them for their size. Most
    // passes look for a name the theme has nowhere: then none is asked.
    static const std::vector<uint32_t> kNone;
    for (const uint32_t i : skipUnlisted&& probe.listedNowhere() ? kNone : layout->serving(size, subdirs)) {
        const VyxIconThemeSubdir& subdir = subdirs[i];
        if (size != iconSize && subdir.size() != size)
            continue;
        if (subdir.size() > 0 && !subdir.matchesSize(size))
            continue;
        if (generic && (isMimeOrApplications(iconContext) || isMimeOrApplications(subdir.context().c_str())))
            continue;
        const uint32_t* dirs = &layout->dirs[i * layout->stride];
        if (skipUnlisted && !probe.mayHoldAny(dirs, layout->stride))
            continue;
        found = findIconWith(subdir, probe, path.c_str(), searchName.c_str(), size, iconContext, otherPaths, dirs);
        // Without a context the second try would repeat a subset of the
        // first: skipped, with the same answer.
        if (found.empty() && switches.searchWithoutContext == 1 && iconContext && *iconContext)
            found = findIconWith(subdir, probe, path.c_str(), searchName.c_str(), size, nullptr, {}, dirs);
        if (!found.empty())
            return found;
    }
    found = searchParents(searchName, iconName, size, iconContext);
    if (found.empty())
        iconTrace(kToolPrefix, "icon theme %s error: getIcon(iconName=%s,iconSize=%d,iconContext=%s)\n", name.c_str(),
                  iconName, size, iconContext ? iconContext : "");
    return found;
}

namespace {

// The cache key of a pass: "name-size-context", written into key.
void setPassKey(std::string& key, std::string_view searchName, int iconSize, int size, const char* iconContext)
{
    char number[16];
    char* end = std::to_chars(number, number + sizeof number, iconSize >= 1 ? iconSize : size).ptr;
    key.assign(searchName).append(1, '-').append(number, size_t(end - number)).append(1, '-');
    if (iconContext)
        key.append(iconContext);
}

// The passes of one lookup in their order: each one's name, size and
// whether it is generic, as the bigger sizes and the shorter names change
// them.
class PassSequence {
public:
    PassSequence(const char* iconName, int iconSize, int size, bool bigger, bool generic)
        : m_name(iconName), m_iconSize(iconSize), m_size(size), m_bigger(bigger), m_cutNames(generic)
    { }
    const std::string& name() const { return m_name; }
    int size() const { return m_size; }
    bool generic() const { return m_generic; }
    int index() const { return m_index; }
    // Moves to the next pass; false when no fallback applies.
    bool next()
    {
        if (m_bigger && m_size < 128) {
            m_size = m_size < 48 ? 48 : 128;
            // The key carries the requested size when there is one.
            m_keyChanged = m_iconSize < 1;
        } else if (m_cutNames && Vyx::cutLastSection(m_name, '-')) {
            m_size = m_iconSize < 1 ? 32 : m_iconSize;
            m_generic = true;
            m_keyChanged = true;
        } else {
            return false;
        }
        ++m_index;
        return true;
    }
    // Whether the last step changed the pass's cache key.
    bool keyChanged() const { return m_keyChanged; }

private:
    std::string m_name;
    int m_iconSize;
    int m_size;
    bool m_bigger;
    bool m_cutNames;
    bool m_generic = false;
    bool m_keyChanged = false;
    int m_index = 0;
};

}  // namespace

namespace {

// The key of a lookup's first pass, in a buffer of the thread's own: most
// lookups end at it, and a remembered answer then costs no allocation.
// Valid until the thread's next lookup (a parent's included).
const std::string& firstPassKey(const char* iconName, int iconSize, int size, const char* iconContext)
{
    thread_local std::string key;
    setPassKey(key, iconName, iconSize, size, iconContext);
    return key;
}

// A name that is a path, or carries an image extension, is first taken as
// a file: the answer when it settles the lookup.
bool answerAsFile(VyxIconTheme& theme, const char* iconName, int size, const char* iconContext, std::string* found)
{
    if (std::strchr(iconName, '/')) {
        *found = VyxIconTheme::CheckFullPath(iconName, nullptr);
        return true;
    }
    if (!Vyx::detail::hasImageExtension(iconName))
        return false;
    *found = VyxIconTheme::CheckFullPath(iconName, nullptr);
    if (!found->empty())
        return true;
    std::string bare = iconName;
    if (Vyx::cutLastSection(bare, '.'))
        *found = theme.getIconPath(bare.c_str(), size, iconContext);
    return !found->empty();
}

}  // namespace

bool VyxIconThemePrivate::readyToSearch(VyxIconTheme& theme)
{
    if (loadState == 65535)
        theme.load();
    if (!theme.isLoaded())
        return false;
    if (path.empty())
        path = VyxIconTheme::findThemePath(themeName);
    return !path.empty();
}

std::string VyxIconThemePrivate::recallPasses(const std::string& askedKey, const char* iconName, int iconSize, int size,
                                              const char* iconContext, int64_t now, bool* known)
{
    // Asked before, and the passes that found nothing would still find
    // nothing: the answer is that of the first later pass whose key is
    // remembered, as the passes would reach it, or "" when none found
    // anything.
    *known = true;
    std::string found;
    const Vyx::detail::IconPathCache::Trail trail = answers.trail(askedKey, Vyx::detail::IconFiles::generation(), now);
    if (trail.count > 0) {
        PassSequence pass(iconName, iconSize, size, searchesBigger(), iconSwitches().searchGeneric == 1);
        std::string key;
        while (pass.index() + 1 < trail.count && pass.next()) {
            if (!pass.keyChanged())
                continue;
            setPassKey(key, pass.name(), iconSize, pass.size(), iconContext);
            if (answers.recallExisting(key, path, now, &found))
                return found;
        }
        if (!trail.found)
            return std::string();
        answers.forgetTrail(askedKey);
    }
    *known = false;
    return found;
}

std::string VyxIconThemePrivate::search(std::string askedKey, const char* iconName, int iconSize, int size,
                                        const char* iconContext, int64_t now)
{
    std::shared_ptr<IconThemeLayout> layout = fileLayout();
    Vyx::detail::IconProbe probe(layout->files.listing(now), cache.get());
    const uint64_t generation = Vyx::detail::IconFiles::generation();
    const uint64_t uncertainBefore = IconProbe::uncertainChecks();
    PassSequence pass(iconName, iconSize, size, searchesBigger(), iconSwitches().searchGeneric == 1);
    std::string key, found;  // key: that of the last pass whose key changed
    bool remembered = false, newKey = false;
    while (true) {
        // A bigger pass has the key of the pass before it, which was just
        // found missing.
        if (newKey && answers.recall(key, &found)) {
            remembered = true;
            break;
        }
        found = searchPass(probe, pass.name(), iconName, iconSize, pass.size(), iconContext, pass.generic());
        if (!found.empty() || !pass.next())
            break;
        newKey = pass.keyChanged();
        if (newKey)
            setPassKey(key, pass.name(), iconSize, pass.size(), iconContext);
    }
    if (found.empty() && iconSwitches().searchOutOfThemes == 1)
        found = searchOutOfThemes(probe, iconName);

    if (!found.empty() && !remembered)
        answers.store(key.empty() ? askedKey : key, found);
    // Only when every check of the passes that found nothing came from a
    // listing: a file the listing does not cover could appear at any time.
    if ((found.empty() || pass.index() > 0) && IconProbe::uncertainChecks() == uncertainBefore &&
        generation == Vyx::detail::IconFiles::generation())
        answers.storeTrail(std::move(askedKey), {pass.index() + 1, !found.empty()}, generation, now);
    return !remembered || answers.fileExists(found, path, now) ? found : std::string();
}

bool VyxIconThemePrivate::searchesBigger() const
{
    // The product's own themes are never searched at a bigger size.
    return iconSwitches().searchBigger == 1 && !Vyx::startsWith(themeName, "vyx");
}

std::string VyxIconTheme::getIconPath(const char* iconName, int iconSize, const char* iconContext)
{
    if (!iconName || !*iconName)
        return std::string();
    int size = iconSize;
    if (size < 1) {
        size = 32;
        iconTrace(kToolPrefix, "icon theme %s error: getIcon(%s,...) with undefined size requested, 32 will be used\n",
                  d->themeName.c_str(), iconName);
    }
    std::string found;
    if (answerAsFile(*this, iconName, size, iconContext, &found))
        return found;
    if (!d->readyToSearch(*this))
        return std::string();

    const int64_t now = Vyx::detail::iconClockNow();
    const std::string& firstKey = firstPassKey(iconName, iconSize, size, iconContext);
    // A remembered file that has gone is not searched again.
    if (d->answers.recallExisting(firstKey, d->path, now, &found))
        return found;
    bool known = false;
    found = d->recallPasses(firstKey, iconName, iconSize, size, iconContext, now, &known);
    if (known)
        return found;
    // A copy: the parents' lookups reuse the buffer.
    return d->search(firstKey, iconName, iconSize, size, iconContext, now);
}
