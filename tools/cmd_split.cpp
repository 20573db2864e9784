// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore split: a command line as the library splits it.

#include "commands.h"

#include <vyxcmdline.h>

#include <cstdio>
#include <cstring>
#include <memory>

namespace tool {

int runSplit(const CommonOptions& options)
{
    const std::string& line = options.positional[0];
    if (line.size() >= CmdLineBufferSize)
        return usageError("split",
                          "the command line is longer than " + std::to_string(CmdLineBufferSize - 1) + " bytes");

    std::unique_ptr<char[]> buffer(new char[CmdLineBufferSize]());
    std::memcpy(buffer.get(), line.c_str(), line.size() + 1);
    std::unique_ptr<CmdLineInfo> info(new CmdLineInfo);
    int code = MakeArgVector(buffer.get(), info.get());

    std::vector<std::string> argv(info->argv, info->argv + info->argc);
    if (options.json) {
        std::vector<std::string> items;
        for (const std::string& arg : argv)
            items.push_back(jsonString(arg));
        JsonObject out;
        out.add("argv", jsonArray(items))
            .addString("redirect", info->redirectFile)
            .addBool("append", info->append != 0)
            .addString("pipe", info->pipeCommand)
            .addInt("error", code)
            .addString("message", info->message);
        std::printf("%s\n", out.str().c_str());
    } else if (code != CmdLineOk) {
        std::printf("error %d: %s\n", code, info->message);
    } else {
        for (size_t i = 0; i < argv.size(); ++i)
            std::printf("argv[%zu] %s\n", i, argv[i].c_str());
        if (info->redirectFile[0])
            std::printf("%s %s\n", info->append ? ">>" : ">", info->redirectFile);
        if (info->pipeCommand[0])
            std::printf("| %s\n", info->pipeCommand);
    }
    return code == CmdLineOk ? Done : NothingFound;
}

}  // namespace tool
