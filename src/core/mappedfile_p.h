#ifndef VYXCORE_MAPPEDFILE_P_H
#define VYXCORE_MAPPEDFILE_P_H

// A file mapped read-only, with reads that can never leave the mapping: the
// one reader under the binary caches (mime.cache, icon-theme.cache).

#include <cstddef>
#include <cstdint>
#include <string>

namespace Vyx::detail {

class MappedFile {
public:
    MappedFile() = default;
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    // False when the file cannot be opened, is not a regular file or is empty.
    bool open(const std::string& path);
    size_t size() const { return m_size; }
    const unsigned char* data() const { return m_data; }

    // Big-endian integers at offset; false (and *out untouched) when they
    // would reach past the end.
    bool u16(uint64_t offset, uint16_t* out) const;
    bool u32(uint64_t offset, uint32_t* out) const;
    // The NUL-terminated text at offset; null when it does not end inside
    // the file.
    const char* string(uint64_t offset) const;
    // Whether [offset, offset + length) lies inside the file.
    bool contains(uint64_t offset, uint64_t length) const { return offset <= m_size && length <= m_size - offset; }

private:
    unsigned char* m_data = nullptr;
    size_t m_size = 0;
};

}  // namespace Vyx::detail

#endif
