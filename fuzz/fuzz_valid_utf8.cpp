// isValidUtf8 must stop at the NUL whatever the byte structure.
#include <vyxstrings.h>

#include <cstdint>
#include <cstring>
#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::unique_ptr<unsigned char[]> text(new unsigned char[size + 1]);
    std::memcpy(text.get(), data, size);
    text[size] = '\0';
    Vyx::isValidUtf8(text.get());
    return 0;
}
