// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "core/pathprobe_p.h"

#include "core/dirwalker_p.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Vyx::detail {

bool isRegularFile(const std::string& path)
{
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

bool isDirectory(const std::string& path)
{
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool isPlainFileName(const std::string& name)
{
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}

std::string firstRegularFile(const std::string& base, const char* const* extensions, size_t count)
{
    for (size_t i = 0; i < count; ++i) {
        std::string path = base + extensions[i];
        if (isRegularFile(path))
            return path;
    }
    return std::string();
}

DirectoryProbe::DirectoryProbe(std::string root) : m_root(std::move(root))
{
    m_rootFd.reset(open(m_root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

DirectoryProbe::~DirectoryProbe() = default;

bool DirectoryProbe::statIsDirectory(const std::string& relative) const
{
    return Vyx::detail::isDirectory(m_root + "/" + relative);
}

const DirectoryProbe::Listing& DirectoryProbe::listing(const std::string& parent)
{
    auto found = m_listings.find(parent);
    if (found != m_listings.end())
        return found->second;
    Listing& listing = m_listings[parent];
    UniqueFd fd(parent.empty() ? openat(m_rootFd.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)
                               : openat(m_rootFd.get(), parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!fd) {
        // A parent that is missing or not a directory holds no directory;
        // any other failure (a parent we may pass but not list) goes to stat.
        listing.listed = errno == ENOENT || errno == ENOTDIR;
        return listing;
    }
    // A parent we may list but not pass: stat of what it holds fails, so
    // the listing would answer otherwise.
    if (faccessat(fd.get(), ".", X_OK, AT_EACCESS) != 0)
        return listing;
    DirWalker dir = DirWalker::fromDescriptor(fd.release());
    if (!dir.isOpen())
        return listing;
    while (const dirent* entry = dir.next())
        listing.types.emplace(entry->d_name, entry->d_type);
    listing.listed = true;
    return listing;
}

bool DirectoryProbe::isDirectory(const std::string& relative)
{
    if (!m_rootFd)
        return statIsDirectory(relative);
    // Only plain relative paths are listed: ".", ".." and "//" would need
    // the walk stat does.
    size_t start = 0;
    for (;;) {
        const size_t slash = relative.find('/', start);
        const size_t length = (slash == std::string::npos ? relative.size() : slash) - start;
        if (length == 0 || (length == 1 && relative[start] == '.') ||
            (length == 2 && relative[start] == '.' && relative[start + 1] == '.'))
            return statIsDirectory(relative);
        if (slash == std::string::npos)
            break;
        start = slash + 1;
    }
    const size_t slash = relative.rfind('/');
    const std::string parent = slash == std::string::npos ? std::string() : relative.substr(0, slash);
    const Listing& list = listing(parent);
    if (!list.listed)
        return statIsDirectory(relative);
    const auto entry = list.types.find(relative.substr(slash == std::string::npos ? 0 : slash + 1));
    if (entry == list.types.end())
        return false;
    if (entry->second == DT_DIR)
        return true;
    if (entry->second == DT_LNK || entry->second == DT_UNKNOWN)
        return statIsDirectory(relative);
    return false;
}

}  // namespace Vyx::detail
