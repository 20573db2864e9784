// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_CMDLINE_H
#define VYXCORE_CMDLINE_H

/// \file
/// Splitting one command line into an argument vector the way a small shell
/// would, without running a shell: variables expanded, quotes and escapes
/// honoured, output redirection and a pipe recognised, "#" comments cut. The
/// result lives in a caller-owned record; nothing is allocated.
///
/// Threads: MakeArgVector and ExpandDollarVariables keep no state: they work
/// only on the buffers they are given and may run on several threads at once
/// with different buffers and records. They read the environment to expand
/// variables.

#include "vyxexport.h"

#include <cstddef>
#include <cstdint>

/// Sizes that are part of the interface.
enum {
    CmdLineBufferSize = 16384,  ///< the command buffer and the argument text
    CmdLineFieldSize = 4096,  ///< the redirect file and the pipe command
    CmdLineMaxArguments = 128,  ///< further words are dropped silently
    CmdLineMaxQuoteLevels = 15
};

/// Result codes of MakeArgVector; the message of each is in the record.
enum CmdLineError {
    CmdLineOk = 0,
    CmdLineUnbalancedQuotes = 1,  ///< "Unbalanced quotes" (never produced)
    CmdLineTooManyQuotes = 2,  ///< "Too many sets of quotes"
    CmdLineRedirectTwice = 3,  ///< "Cannot redirect output to more than one file"
    CmdLineNoRedirectFile = 4,  ///< "No filename supplied to redirect output to"
    CmdLineNoPipeCommand = 5,  ///< "No command supplied to pipe output to"
    CmdLineInputRedirect = 6,  ///< "Redirection of input not implemented"
    CmdLineRedirectAndPipe = 7  ///< "Cannot redirect and pipe out at the same time"
};

/// A command line split into arguments, with its redirection and pipe (see
/// MakeArgVector). A plain record that owns its buffers; copying it would
/// leave argv pointing into the original, so use it where it was filled.
struct CmdLineInfo {
    int32_t argc;  ///< 0 after an error
    int32_t append;  ///< 1 for ">>"
    char redirectFile[CmdLineFieldSize];  ///< empty when there is none
    char pipeCommand[CmdLineFieldSize];  ///< the text after "|", empty when none
    char argText[CmdLineBufferSize];  ///< the arguments, each NUL-terminated
    /// argv[0..argc-1] point into argText; argv[argc] is null, argv[argc+1]
    /// the command buffer, argv[argc+2] the record itself, argv[argc+3] null.
    char* argv[CmdLineMaxArguments + 4];
    int32_t error;  ///< a CmdLineError
    const char* message;  ///< its message; "" for success
};

/// Splits cmd into info and returns the result code (a CmdLineError; 0 when
/// the line is fine, including an empty one). cmd must be a writable buffer of
/// CmdLineBufferSize bytes: variables are expanded in it and a comment is cut
/// off. Words past the 128th are dropped without an error. A redirect file
/// name or pipe command longer than CmdLineFieldSize - 1 bytes, and argument
/// text past CmdLineBufferSize - 1 bytes, are cut there and stay
/// NUL-terminated; nothing is written past the record or the buffer.
/// "\ddd" takes exactly three digits as an octal byte (an 8 or 9 ends the
/// value early: "\108" is byte 8, "\999" byte 0). A null cmd counts as an
/// empty line; a null info returns -1 and touches nothing.
VYX_EXPORT int MakeArgVector(char* cmd, CmdLineInfo* info);

/// Expands "$NAME" and "${NAME}" in the NUL-terminated text of buffer, in
/// place. An unbraced name is the run of letters and digits after "$" ("_"
/// ends it); a braced one runs to the next "}", which is removed with it.
/// An unbraced name ends after 254 characters; a braced name longer than that,
/// unset and empty variables and a "$" followed by anything else stay as
/// written. A backslash protects the next character (both are kept). Values are not expanded again. Never writes past
/// size bytes: the last byte is always set to NUL, so a longer result (or a
/// long value) is cut there. Does nothing for a null buffer or size 0.
VYX_EXPORT void ExpandDollarVariables(char* buffer, size_t size);

#endif
