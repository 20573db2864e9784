// The mime.cache reader on arbitrary bytes: every offset and count is
// hostile. The bytes live in a memory file, mapped as a real cache is.
#include "core/mappedfile_p.h"
#include "mime/mimedb_p.h"

#include <cstdint>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    int fd = memfd_create("mime.cache", 0);
    if (fd < 0)
        return 0;
    if (write(fd, data, size) != static_cast<ssize_t>(size)) {
        close(fd);
        return 0;
    }
    Vyx::detail::MappedFile file;
    if (file.open("/proc/self/fd/" + std::to_string(fd))) {
        Vyx::detail::MimeDatabase db;
        db.readCache(file);
        db.matchName("archive.tar.gz");
        db.matchMagic(data, size, nullptr);
    }
    close(fd);
    return 0;
}
