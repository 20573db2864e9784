// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "core/mappedfile_p.h"

#include "core/firstanswer_p.h"
#include "core/pathprobe_p.h"

#include "core/readfile_p.h"
#include "core/uniquefd_p.h"

#include <cstring>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Vyx::detail {

VYX_FIRST_ANSWER MappedFile::~MappedFile()
{
    if (m_data)
        munmap(m_data, m_size);
}

VYX_FIRST_ANSWER bool MappedFile::open(const std::string& path, int64_t* modified)
{
    const UniqueFd fd(openRegularFile(path.c_str()));
    if (!fd)
        return false;
    struct stat st;
    bool ok = fstat(fd.get(), &st) == 0 && map(fd.get(), st);
    if (ok && modified)
        *modified = modifiedNs(st);
    return ok;
}

VYX_FIRST_ANSWER bool MappedFile::map(int fd, const struct stat& st)
{
    if (m_data || !S_ISREG(st.st_mode) || st.st_size <= 0)
        return false;
    void* bytes = mmap(nullptr, static_cast<size_t>(st.st_size), PROT_READ, MAP_SHARED, fd, 0);
    if (bytes == MAP_FAILED)
        return false;
    m_data = static_cast<unsigned char*>(bytes);
    m_size = static_cast<size_t>(st.st_size);
    return true;
}

VYX_FIRST_ANSWER bool ByteView::u16(uint64_t offset, uint16_t* out) const
{
    if (!contains(offset, 2))
        return false;
    *out = static_cast<uint16_t>(m_data[offset] << 8 | m_data[offset + 1]);
    return true;
}

VYX_FIRST_ANSWER bool ByteView::u32(uint64_t offset, uint32_t* out) const
{
    if (!contains(offset, 4))
        return false;
    const unsigned char* p = m_data + offset;
    *out = uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | uint32_t(p[3]);
    return true;
}

VYX_FIRST_ANSWER const char* ByteView::string(uint64_t offset) const
{
    if (offset >= m_size)
        return nullptr;
    const void* nul = std::memchr(m_data + offset, '\0', m_size - offset);
    return nul ? reinterpret_cast<const char*>(m_data + offset) : nullptr;
}

VYX_FIRST_ANSWER int ByteView::compare(uint64_t offset, const char* key) const
{
    const unsigned char* k = reinterpret_cast<const unsigned char*>(key);
    for (uint64_t i = offset;; ++i, ++k) {
        unsigned char c = i < m_size ? m_data[i] : 0;
        if (c != *k)
            return int(c) - int(*k);
        if (c == 0)
            return 0;
    }
}

}  // namespace Vyx::detail
