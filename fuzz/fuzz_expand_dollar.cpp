// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// ExpandDollarVariables with the buffer size taken from the input.
#include <vyxcmdline.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static bool prepared = [] {
        setenv("A", std::string(5000, 'a').c_str(), 1);
        setenv("B", "$A", 1);
        setenv("C", "", 1);
        return true;
    }();
    (void)prepared;
    if (size < 2)
        return 0;
    size_t bufferSize = (static_cast<size_t>(data[0]) << 8 | data[1]) % 4096 + 1;
    std::unique_ptr<char[]> buffer(new char[bufferSize]);
    size_t n = size - 2 < bufferSize ? size - 2 : bufferSize;
    std::memcpy(buffer.get(), data + 2, n);
    std::memset(buffer.get() + n, 0, bufferSize - n);
    ExpandDollarVariables(buffer.get(), bufferSize);
    if (buffer[bufferSize - 1] != '\0')
        abort();
    return 0;
}
