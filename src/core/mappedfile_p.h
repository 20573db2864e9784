// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of core, open to every folder of the library.

#ifndef VYXCORE_MAPPEDFILE_P_H
#define VYXCORE_MAPPEDFILE_P_H

// A file mapped read-only, with reads that can never leave the mapping: the
// one reader under the binary caches (mime.cache, icon-theme.cache).

#include <cstddef>
#include <cstdint>
#include <string>
#include <sys/stat.h>

namespace Vyx::detail {

// Bytes read only through bounded accessors: whatever the offsets in them
// say, nothing outside [data, data + size) is touched.
class ByteView {
public:
    ByteView() = default;
    ByteView(const unsigned char* data, size_t size) : m_data(data), m_size(size) { }

    size_t size() const { return m_size; }
    const unsigned char* data() const { return m_data; }
    // Big-endian integers at offset; false (and *out untouched) when they
    // would reach past the end.
    bool u16(uint64_t offset, uint16_t* out) const;
    bool u32(uint64_t offset, uint32_t* out) const;
    // The same, 0 when out of range: for walks that treat 0 as "none".
    uint32_t u32At(uint64_t offset) const
    {
        uint32_t value = 0;
        u32(offset, &value);
        return value;
    }
    // The NUL-terminated text at offset; null when it does not end inside
    // the bytes.
    const char* string(uint64_t offset) const;
    // strcmp of key against the text at offset, reading no further than the
    // first difference; the end of the bytes counts as the text's end.
    int compare(uint64_t offset, const char* key) const;
    // Whether [offset, offset + length) lies inside the bytes.
    bool contains(uint64_t offset, uint64_t length) const { return offset <= m_size && length <= m_size - offset; }

private:
    const unsigned char* m_data = nullptr;
    size_t m_size = 0;
};

class MappedFile {
public:
    MappedFile() = default;
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    // False when the file cannot be opened, is not a regular file or is empty.
    // *modified, when given, receives the mapped file's modification time
    // in ns.
    bool open(const std::string& path, int64_t* modified = nullptr);
    // The same for a descriptor already open for reading, st its fstat; the
    // descriptor stays the caller's.
    bool map(int fd, const struct stat& st);
    size_t size() const { return m_size; }
    const unsigned char* data() const { return m_data; }
    ByteView view() const { return ByteView(m_data, m_size); }

    bool u16(uint64_t offset, uint16_t* out) const { return view().u16(offset, out); }
    bool u32(uint64_t offset, uint32_t* out) const { return view().u32(offset, out); }
    const char* string(uint64_t offset) const { return view().string(offset); }
    bool contains(uint64_t offset, uint64_t length) const { return view().contains(offset, length); }

private:
    unsigned char* m_data = nullptr;
    size_t m_size = 0;
};

}  // namespace Vyx::detail

#endif
