// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// MakeArgVector on any line, with huge variable values to expand. The
// command buffer and the record are exact heap blocks, so ASan sees any
// write past them.
#include <vyxcmdline.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static bool prepared = [] {
        setenv("A", std::string(20000, 'a').c_str(), 1);
        setenv("B", "x y 'z", 1);
        setenv("C", std::string(3000, '"').c_str(), 1);
        setenv("D", "> f | g", 1);
        return true;
    }();
    (void)prepared;
    std::unique_ptr<char[]> cmd(new char[CmdLineBufferSize]);
    size_t n = size < CmdLineBufferSize - 1 ? size : CmdLineBufferSize - 1;
    std::memcpy(cmd.get(), data, n);
    cmd[n] = '\0';
    std::unique_ptr<CmdLineInfo> info(new CmdLineInfo);
    int code = MakeArgVector(cmd.get(), info.get());
    if (code < 0 || code > 7 || info->argc < 0 || info->argc > CmdLineMaxArguments)
        abort();
    if (code != 0 && info->argc != 0)
        abort();
    if (!std::memchr(info->redirectFile, 0, sizeof info->redirectFile) ||
        !std::memchr(info->pipeCommand, 0, sizeof info->pipeCommand))
        abort();
    const int argc = info->argc;
    if (info->argv[argc] || info->argv[argc + 1] != cmd.get() ||
        info->argv[argc + 2] != reinterpret_cast<char*>(info.get()) || info->argv[argc + 3])
        abort();
    for (int i = 0; i < info->argc; ++i) {
        if (info->argv[i] < info->argText || info->argv[i] >= info->argText + sizeof info->argText)
            abort();
    }
    return 0;
}
