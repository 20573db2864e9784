// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// isEscapedUtf8 writes at most strlen + 1 bytes into the caller's buffer and
// undoes encodedUrl.
#include <vyxstrings.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace {

const unsigned char* bytes(const std::string& text)
{
    return reinterpret_cast<const unsigned char*>(text.c_str());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::string text(reinterpret_cast<const char*>(data), size);
    text = text.c_str();  // up to the first NUL, as a C caller would pass it
    size_t length = text.size();
    // Exactly the room the contract promises, so ASan sees any overrun.
    std::unique_ptr<unsigned char[]> out(new unsigned char[length + 1]);
    bool escaped = Vyx::isEscapedUtf8(bytes(text), out.get());
    if (length >= 3 && std::strlen(reinterpret_cast<char*>(out.get())) > length)
        abort();
    if (escaped != Vyx::isEscapedUtf8(bytes(text), nullptr))
        abort();

    // Every escape encodedUrl makes has two digits, so when it escaped
    // anything the decoded text is the original and the answer is its validity.
    std::string encoded = Vyx::encodedUrl(text);
    if (encoded != text) {
        std::unique_ptr<unsigned char[]> back(new unsigned char[encoded.size() + 1]);
        if (Vyx::isEscapedUtf8(bytes(encoded), back.get()) != Vyx::isValidUtf8(bytes(text)) ||
            text != reinterpret_cast<char*>(back.get()))
            abort();
    }
    return 0;
}
