// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Setting the user's default application for a MIME type. The list is
// edited line by line rather than loaded and saved through the INI
// document: a save would drop comments at the end of a group, repeated keys
// and the file's own spelling, and the user's file must come back with
// only the changed lines changed.

#include "vyxmime.h"

#include "core/atomicfile_p.h"
#include "core/diag_p.h"
#include "core/makedirs_p.h"
#include "core/readfile_p.h"
#include "core/uniquefd_p.h"
#include "desktopentry/desktopid_p.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

using namespace Vyx::detail;

namespace {

// Far beyond any real list; a larger file is not one we should rewrite.
constexpr off_t kMaxListSize = 4 << 20;

bool fail(const std::string& message)
{
    diag(kLibraryPrefix, "%s\n", message.c_str());
    return false;
}

// A value from the caller shown in a message: control bytes would break
// the one line a message is.
std::string shown(const char* value)
{
    std::string text = Vyx::makeString(value);
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f)
            c = '?';
    }
    return text;
}

std::string trimmed(const std::string& text)
{
    std::string::size_type first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos)
        return std::string();
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

bool sameKey(const std::string& a, const std::string& b)
{
    return a.size() == b.size() && strncasecmp(a.c_str(), b.c_str(), a.size()) == 0;
}

// The lines of a mimeapps.list, each kept byte for byte.
class ListText {
public:
    // False, with the reason, when the text is not a list we may rewrite.
    bool parse(const std::string& text, std::string* reason)
    {
        if (text.find('\0') != std::string::npos) {
            *reason = "holds NUL bytes";
            return false;
        }
        std::string::size_type start = 0;
        while (start < text.size()) {
            std::string::size_type end = text.find('\n', start);
            if (end == std::string::npos)
                end = text.size();
            m_lines.push_back(text.substr(start, end - start));
            start = end + 1;
        }
        for (size_t i = 0; i < m_lines.size(); ++i) {
            std::string line = trimmed(m_lines[i]);
            bool group = line.size() >= 2 && line.front() == '[' && line.back() == ']';
            if (!line.empty() && line[0] != '#' && line[0] != ';' && !group && line.find('=') == std::string::npos) {
                *reason = "line " + std::to_string(i + 1) + " is neither a group, a key nor a comment";
                return false;
            }
        }
        return true;
    }

    // The value of the last key named key in group, if there is one.
    std::optional<std::string> value(const std::string& group, const std::string& key) const
    {
        std::optional<std::string> found;
        forKeys(group, key, [&](size_t i) {
            std::string::size_type eq = m_lines[i].find('=');
            found = trimmed(m_lines[i].substr(eq + 1));
        });
        return found;
    }

    // Gives key the value (removes the key for none), in place of its first
    // line; a key written twice keeps only that line. A new key goes after
    // the group's last line, a new group at the end of the file.
    void set(const std::string& group, const std::string& key, const std::optional<std::string>& value)
    {
        std::vector<size_t> at;
        forKeys(group, key, [&](size_t i) { at.push_back(i); });
        std::string line = key + '=' + value.value_or(std::string());
        if (!at.empty()) {
            for (size_t n = at.size(); n-- > 1;)
                m_lines.erase(m_lines.begin() + static_cast<long>(at[n]));
            if (value)
                m_lines[at[0]] = line;
            else
                m_lines.erase(m_lines.begin() + static_cast<long>(at[0]));
            return;
        }
        if (!value)
            return;
        size_t header = findGroup(group);
        if (header == m_lines.size()) {
            if (!m_lines.empty() && !trimmed(m_lines.back()).empty())
                m_lines.emplace_back();
            m_lines.push_back('[' + group + ']');
            m_lines.push_back(line);
            return;
        }
        size_t last = header;
        for (size_t i = header + 1; i < m_lines.size() && !isGroup(i); ++i) {
            if (!trimmed(m_lines[i]).empty())
                last = i;
        }
        m_lines.insert(m_lines.begin() + static_cast<long>(last + 1), line);
    }

    std::string text() const
    {
        std::string out;
        for (const std::string& line : m_lines)
            out += line + '\n';
        return out;
    }

private:
    bool isGroup(size_t i) const
    {
        std::string line = trimmed(m_lines[i]);
        return line.size() >= 2 && line.front() == '[' && line.back() == ']';
    }
    size_t findGroup(const std::string& group) const
    {
        for (size_t i = 0; i < m_lines.size(); ++i) {
            if (isGroup(i) && trimmed(m_lines[i]) == '[' + group + ']')
                return i;
        }
        return m_lines.size();
    }
    template <typename Visit> void forKeys(const std::string& group, const std::string& key, Visit visit) const
    {
        for (size_t i = findGroup(group) + 1; i < m_lines.size() && !isGroup(i); ++i) {
            const std::string& line = m_lines[i];
            std::string::size_type eq = line.find('=');
            std::string name = trimmed(line.substr(0, eq));
            if (eq != std::string::npos && !name.empty() && name[0] != '#' && sameKey(name, key))
                visit(i);
        }
    }

    std::vector<std::string> m_lines;
};

// The whole list, or false with the reason; a missing file is an empty list.
bool readList(const std::string& path, std::string& text, std::string* reason)
{
    UniqueFd owned(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    const int fd = owned.get();
    if (fd < 0) {
        if (errno == ENOENT)
            return true;
        *reason = std::strerror(errno);
        return false;
    }
    // Not openRegularFile: a FIFO here must be an error, never an empty
    // list that the write would then put in its place.
    struct stat st;
    bool ok = fstat(fd, &st) == 0;
    if (!ok)
        *reason = std::strerror(errno);
    else if (!S_ISREG(st.st_mode) || st.st_size > kMaxListSize)
        *reason = S_ISREG(st.st_mode) ? "is too large" : "is not a regular file";
    else if (!Vyx::detail::readRegularDescriptor(fd, text))
        *reason = std::strerror(errno);
    else if (text.size() > static_cast<size_t>(kMaxListSize))
        *reason = "is too large";
    return ok && reason->empty();
}

bool isWritableType(const char* mime)
{
    if (!xdg_mime_is_valid_mime_type(mime))
        return false;
    for (const char* p = mime; *p; ++p) {
        unsigned char c = static_cast<unsigned char>(*p);
        if (c <= 0x20 || c >= 0x7f || std::strchr("=;[]#", c))
            return false;
    }
    return true;
}

}  // namespace

bool SetDefaultApplication(const char* mime, const char* desktopId)
{
    if (!mime || !isWritableType(mime))
        return fail(Vyx::concat("SetDefaultApplication: '", shown(mime), "' is not a MIME type"));
    std::string id = Vyx::makeString(desktopId);
    FillDesktopEntriesDirArray();
    if (!isWellFormedDesktopId(id) || desktopIdPath(id).empty())
        return fail(Vyx::concat("SetDefaultApplication: no installed application '", shown(id.c_str()), "'"));
    std::string path = GetWritableMimeappsList();
    if (path.empty())
        return fail("SetDefaultApplication: no configuration directory");

    std::string old, reason;
    ListText list;
    if (!readList(path, old, &reason) || !list.parse(old, &reason))
        return fail(Vyx::concat("SetDefaultApplication: ", path, " ", reason, "; not rewritten"));

    list.set("Default Applications", mime, id + ';');
    std::string added = id + ';';
    for (const std::string& other : Vyx::split(list.value("Added Associations", mime).value_or("").c_str(), ";")) {
        if (other != id)
            added += other + ';';
    }
    list.set("Added Associations", mime, added);
    if (std::optional<std::string> removed = list.value("Removed Associations", mime)) {
        std::string kept;
        bool named = false;
        for (const std::string& other : Vyx::split(removed->c_str(), ";")) {
            if (other == id)
                named = true;
            else
                kept += other + ';';
        }
        if (named)
            list.set("Removed Associations", mime, kept.empty() ? std::nullopt : std::optional<std::string>(kept));
    }

    std::string::size_type slash = path.rfind('/');
    if (slash != std::string::npos && slash > 0 && !makePrivateDirectories(path.substr(0, slash)))
        return fail(Vyx::concat("SetDefaultApplication: cannot create the directory of ", path));
    if (!writeFileAtomically(path, list.text()))
        return fail(Vyx::concat("SetDefaultApplication: cannot write ", path));
    return true;
}
