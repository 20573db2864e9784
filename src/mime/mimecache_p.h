#ifndef VYXCORE_MIMECACHE_P_H
#define VYXCORE_MIMECACHE_P_H

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace Vyx::detail {

// MIME type -> desktop-file paths, each type's paths in the order they were
// registered, no pair twice.
class AvailableMap {
public:
    void add(const std::string& type, const std::string& path);
    bool empty() const { return m_byType.empty(); }
    const std::vector<std::string>* pathsFor(const std::string& type) const;
    // The cache file's text: one line per path, ascending, "path=type;type\n".
    std::string toCacheText() const;

private:
    std::map<std::string, std::vector<std::string>> m_byType;
};

// Reads cache-file lines (at most 8190 characters each) into map.
void readCacheFile(FILE* file, AvailableMap* map);

}  // namespace Vyx::detail

#endif
