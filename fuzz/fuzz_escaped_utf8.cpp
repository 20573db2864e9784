// isEscapedUtf8 writes at most strlen + 1 bytes into the caller's buffer.
#include <vyxstrings.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::unique_ptr<unsigned char[]> text(new unsigned char[size + 1]);
    std::memcpy(text.get(), data, size);
    text[size] = '\0';
    size_t length = std::strlen(reinterpret_cast<char*>(text.get()));
    // Exactly the room the contract promises, so ASan sees any overrun.
    std::unique_ptr<unsigned char[]> out(new unsigned char[length + 1]);
    bool escaped = Vyx::isEscapedUtf8(text.get(), out.get());
    if (escaped && std::strlen(reinterpret_cast<char*>(out.get())) > length)
        abort();
    if (escaped != Vyx::isEscapedUtf8(text.get(), nullptr))
        abort();
    return 0;
}
