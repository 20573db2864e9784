// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore wm, dm: one command to the window manager's FIFO or to the
// display manager's socket.

#include "commands.h"

#include <vyxsession.h>

#include <cstdio>
#include <cstdlib>

namespace tool {

namespace {

// Without DISPLAY the library looks for the channels of an empty display
// name, which is rarely what anyone meant: say so before trying.
void noteMissingDisplay(const char* command)
{
    const char* display = std::getenv("DISPLAY");
    if (!display || !*display)
        std::fprintf(stderr, "vyxcore %s: DISPLAY is not set; trying the channel of the empty display name\n", command);
}

}  // namespace

int runWm(const CommonOptions& options)
{
    noteMissingDisplay("wm");
    const std::string command = options.positional[0] + "\n";
    const std::pair<std::string, bool> fifo = FindVyxWMFIFOPath(nullptr);
    const bool delivered = SendCommandToWM(nullptr, command.c_str());
    if (options.json) {
        std::printf("%s\n", JsonObject()
                                .addString("fifo", fifo.first)
                                .addBool("found", fifo.second)
                                .addString("command", command)
                                .addBool("delivered", delivered)
                                .str()
                                .c_str());
    } else {
        const char* outcome = delivered ? "yes" : fifo.second ? "no: no window manager reads the FIFO" : "no";
        printRows({{"fifo", fifo.first}, {"delivered", outcome}});
    }
    return delivered ? Done : NothingFound;
}

int runDm(const CommonOptions& options)
{
    noteMissingDisplay("dm");
    const char* command = options.positional[0].c_str();
    if (!options.json) {
        const bool sent = SendCommandToDM(nullptr, command);
        std::fflush(stdout);
        return sent ? Done : NothingFound;
    }
    char* reply = nullptr;
    size_t size = 0;
    FILE* out = open_memstream(&reply, &size);
    if (!out)
        return NothingFound;
    const bool sent = SendCommandToDMWithReply(nullptr, command, out);
    std::fclose(out);
    std::printf("%s\n", JsonObject()
                            .addString("socket", GetVyxDMFIFOPath(nullptr).first)
                            .addBool("sent", sent)
                            .addString("reply", std::string(reply, size))
                            .str()
                            .c_str());
    std::free(reply);
    return sent ? Done : NothingFound;
}

}  // namespace tool
