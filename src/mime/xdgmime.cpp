// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "mime/mimedb_p.h"

#include "core/firstanswer_p.h"
#include "mime/xdgmime_p.h"

#include "core/environment_p.h"
#include "core/uniquefd_p.h"
#include "vyxmime.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <mutex>
#include <unistd.h>
#include <vector>

extern "C" {
const char xdg_mime_type_unknown[] = "application/octet-stream";
const char xdg_mime_type_empty[] = "application/x-zerosize";
const char xdg_mime_type_textplain[] = "text/plain";
}

namespace {

using Vyx::detail::MimeDatabase;

constexpr size_t kTextSniffLength = 256;

std::recursive_mutex g_mimeMutex;
std::unique_ptr<MimeDatabase> g_database;
std::vector<unsigned char> g_readBuffer;  // a file's first bytes, under g_mimeMutex

// The "mime" directories, the user's first. Nothing is created.
VYX_FIRST_ANSWER std::vector<std::string> mimeDirs()
{
    std::vector<std::string> dirs;
    std::string dataHome = Vyx::detail::userDataHome();
    if (!dataHome.empty())
        dirs.push_back(dataHome + "/mime");
    for (const std::string& dir : Vyx::detail::xdgDataDirList())
        dirs.push_back(dir + "/mime");
    return dirs;
}

VYX_FIRST_ANSWER MimeDatabase& database()
{
    if (!g_database) {
        g_database.reset(new MimeDatabase);
        g_database->load(mimeDirs());
    }
    return *g_database;
}

// No control characters but white space among the first bytes: text.
VYX_FIRST_ANSWER bool looksLikeText(const unsigned char* data, size_t length)
{
    for (size_t i = 0; i < length && i < kTextSniffLength; ++i) {
        unsigned char c = data[i];
        if (c < 32 && c != '\n' && c != '\r' && c != '\t' && c != '\f')
            return false;
        if (c == 127)
            return false;
    }
    return true;
}

VYX_FIRST_ANSWER const char* typeForData(MimeDatabase& db, const void* data, size_t length, int* priority)
{
    if (length == 0) {
        if (priority)
            *priority = 0;
        return xdg_mime_type_empty;
    }
    const unsigned char* bytes = static_cast<const unsigned char*>(data);
    if (const char* magic = db.matchMagic(bytes, length, priority))
        return magic;
    return looksLikeText(bytes, length) ? xdg_mime_type_textplain : xdg_mime_type_unknown;
}

// The type of a file whose name matched no type or several, by its first
// bytes.
const char* typeByContent(MimeDatabase& db, const Vyx::detail::NameMatch& byName, const unsigned char* bytes,
                          size_t length)
{
    const char* magic = db.matchMagic(bytes, length, nullptr);
    if (!byName.count) {
        if (magic)
            return magic;
        return looksLikeText(bytes, length) ? xdg_mime_type_textplain : xdg_mime_type_unknown;
    }
    // A name type that is the content's type, or a kind of it, wins; when
    // no content rule matched, the text-or-binary guess stands in for one,
    // so that a text file picks the text type among names that tie.
    if (!magic)
        magic = looksLikeText(bytes, length) ? xdg_mime_type_textplain : xdg_mime_type_unknown;
    for (int i = 0; i < byName.count; ++i) {
        if (db.isSubclass(byName.types[i], magic))
            return byName.types[i];
    }
    return byName.types[0];
}

const char* inodeType(const struct stat& st)
{
    if (S_ISDIR(st.st_mode))
        return "inode/directory";
    if (S_ISLNK(st.st_mode))
        return "inode/symlink";
    if (S_ISBLK(st.st_mode))
        return "inode/blockdevice";
    if (S_ISCHR(st.st_mode))
        return "inode/chardevice";
    if (S_ISFIFO(st.st_mode))
        return "inode/fifo";
    if (S_ISSOCK(st.st_mode))
        return "inode/socket";
    return nullptr;
}

}  // namespace

extern "C" {

void xdg_mime_lock(void)
{
    g_mimeMutex.lock();
}

void xdg_mime_unlock(void)
{
    g_mimeMutex.unlock();
}

const char* xdg_mime_get_mime_type_for_data(const void* data, size_t length, int* priority)
{
    std::lock_guard<std::recursive_mutex> lock(g_mimeMutex);
    if (!data && length)
        length = 0;
    return typeForData(database(), data, length, priority);
}

const char* xdg_mime_get_mime_type_from_file_name(const char* file_name)
{
    std::lock_guard<std::recursive_mutex> lock(g_mimeMutex);
    Vyx::detail::NameMatch match = database().matchName(file_name);
    return match.count == 1 ? match.types[0] : xdg_mime_type_unknown;
}

int xdg_mime_get_mime_types_from_file_name(const char* file_name, const char* mime_types[], int n)
{
    std::lock_guard<std::recursive_mutex> lock(g_mimeMutex);
    Vyx::detail::NameMatch match = database().matchName(file_name);
    int count = 0;
    for (; count < match.count && count < n; ++count)
        mime_types[count] = match.types[count];
    return count;
}

const char* xdg_mime_get_mime_type_for_file(const char* file_name, struct stat* statbuf)
{
    std::lock_guard<std::recursive_mutex> lock(g_mimeMutex);
    if (!file_name)
        return xdg_mime_type_unknown;
    MimeDatabase& db = database();
    struct stat own;
    if (!statbuf) {
        if (stat(file_name, &own) != 0)
            return xdg_mime_type_unknown;
        statbuf = &own;
    }
    if (const char* inode = inodeType(*statbuf))
        return inode;

    Vyx::detail::NameMatch byName = db.matchName(file_name);
    if (byName.count == 1)
        return byName.types[0];
    // An empty file has no content to decide by: a name still names it.
    if (statbuf->st_size == 0)
        return byName.count ? byName.types[0] : xdg_mime_type_empty;

    // No name match, or several: the content decides.
    Vyx::detail::UniqueFd fd(open(file_name, O_RDONLY | O_CLOEXEC));
    if (!fd)
        return byName.count ? byName.types[0] : xdg_mime_type_unknown;
    std::vector<unsigned char>& buffer = g_readBuffer;
    buffer.resize(std::max(db.maxExtent(), kTextSniffLength));
    ssize_t got = read(fd.get(), buffer.data(), buffer.size());
    fd.reset();
    return typeByContent(db, byName, buffer.data(), got > 0 ? static_cast<size_t>(got) : 0);
}

int xdg_mime_is_valid_mime_type(const char* mime_type)
{
    if (!mime_type || !*mime_type)
        return 0;
    const char* slash = std::strchr(mime_type, '/');
    if (!slash || slash == mime_type || !slash[1] || std::strchr(slash + 1, '/'))
        return 0;
    for (const char* p = mime_type; *p; ++p) {
        if (static_cast<unsigned char>(*p) <= ' ')
            return 0;
    }
    return 1;
}

int xdg_mime_mime_type_equal(const char* a, const char* b)
{
    if (!a || !b)
        return 0;
    std::lock_guard<std::recursive_mutex> lock(g_mimeMutex);
    MimeDatabase& db = database();
    return std::strcmp(db.unalias(a), db.unalias(b)) == 0;
}

int xdg_mime_media_type_equal(const char* a, const char* b)
{
    if (!a || !b)
        return 0;
    const char* slashA = std::strchr(a, '/');
    const char* slashB = std::strchr(b, '/');
    size_t lengthA = slashA ? size_t(slashA - a) : std::strlen(a);
    size_t lengthB = slashB ? size_t(slashB - b) : std::strlen(b);
    return lengthA == lengthB && std::strncmp(a, b, lengthA) == 0;
}

int xdg_mime_mime_type_subclass(const char* mime, const char* base)
{
    if (!mime || !base)
        return 0;
    std::lock_guard<std::recursive_mutex> lock(g_mimeMutex);
    return database().isSubclass(mime, base);
}

char** xdg_mime_list_mime_parents(const char* mime)
{
    if (!mime)
        return nullptr;
    std::lock_guard<std::recursive_mutex> lock(g_mimeMutex);
    std::vector<const char*> parents = database().parents(mime);
    if (parents.empty())
        return nullptr;
    char** list = static_cast<char**>(std::calloc(parents.size() + 1, sizeof(char*)));
    if (!list)
        return nullptr;
    for (size_t i = 0; i < parents.size(); ++i)
        list[i] = const_cast<char*>(parents[i]);
    return list;
}

const char* xdg_mime_unalias_mime_type(const char* mime)
{
    if (!mime)
        return nullptr;
    std::lock_guard<std::recursive_mutex> lock(g_mimeMutex);
    return database().unalias(mime);
}

const char* xdg_mime_get_icon(const char* mime)
{
    if (!mime)
        return nullptr;
    std::lock_guard<std::recursive_mutex> lock(g_mimeMutex);
    return database().icon(mime, false);
}

const char* xdg_mime_get_generic_icon(const char* mime)
{
    if (!mime)
        return nullptr;
    std::lock_guard<std::recursive_mutex> lock(g_mimeMutex);
    return database().icon(mime, true);
}

int xdg_mime_get_max_buffer_extents(void)
{
    std::lock_guard<std::recursive_mutex> lock(g_mimeMutex);
    return static_cast<int>(database().maxExtent());
}

void xdg_mime_shutdown(void)
{
    std::lock_guard<std::recursive_mutex> lock(g_mimeMutex);
    g_database.reset();
    std::vector<unsigned char>().swap(g_readBuffer);
}

}  // extern "C"

namespace Vyx::detail {

VYX_FIRST_ANSWER const char* guessMimeType(const char* fileName, const void* data, size_t length)
{
    std::lock_guard<std::recursive_mutex> lock(g_mimeMutex);
    MimeDatabase& db = database();
    NameMatch byName = db.matchName(fileName);
    if (byName.count == 1)
        return byName.types[0];
    if (length == 0 || !data)
        return byName.count ? byName.types[0] : xdg_mime_type_empty;
    return typeByContent(db, byName, static_cast<const unsigned char*>(data), length);
}

}  // namespace Vyx::detail
