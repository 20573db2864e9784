#ifndef VYXCORE_CMDLINE_H
#define VYXCORE_CMDLINE_H

// Splitting one command line into an argument vector the way a small shell
// would, without running a shell: variables expanded, quotes and escapes
// honoured, output redirection and a pipe recognised, "#" comments cut. The
// result lives in a caller-owned record; nothing is allocated.

#include "vyxexport.h"

#include <cstddef>
#include <cstdint>

// Sizes that are part of the interface.
enum {
    CmdLineBufferSize = 16384,   // the command buffer and the argument text
    CmdLineFieldSize = 4096,     // the redirect file and the pipe command
    CmdLineMaxArguments = 128,   // further words are dropped silently
    CmdLineMaxQuoteLevels = 15
};

// Result codes of MakeArgVector; the message of each is in the record.
enum CmdLineError {
    CmdLineOk = 0,
    CmdLineUnbalancedQuotes = 1,     // "Unbalanced quotes" (never produced)
    CmdLineTooManyQuotes = 2,        // "Too many sets of quotes"
    CmdLineRedirectTwice = 3,        // "Cannot redirect output to more than one file"
    CmdLineNoRedirectFile = 4,       // "No filename supplied to redirect output to"
    CmdLineNoPipeCommand = 5,        // "No command supplied to pipe output to"
    CmdLineInputRedirect = 6,        // "Redirection of input not implemented"
    CmdLineRedirectAndPipe = 7       // "Cannot redirect and pipe out at the same time"
};

struct CmdLineInfo {
    int32_t argc;                          // 0 after an error
    int32_t append;                        // 1 for ">>"
    char redirectFile[CmdLineFieldSize];   // empty when there is none
    char pipeCommand[CmdLineFieldSize];    // the text after "|", empty when none
    char argText[CmdLineBufferSize];       // the arguments, each NUL-terminated
    // argv[0..argc-1] point into argText; argv[argc] is null, argv[argc+1]
    // the command buffer, argv[argc+2] the record itself, argv[argc+3] null.
    char* argv[CmdLineMaxArguments + 4];
    int32_t error;                         // a CmdLineError
    const char* message;                   // its message; "" for success
};

// Splits cmd into info and returns the result code. cmd must be a writable
// buffer of CmdLineBufferSize bytes: variables are expanded in it and a
// comment is cut off. Fields that would overflow are truncated, never
// written past.
VYX_EXPORT int MakeArgVector(char* cmd, CmdLineInfo* info);

// Expands "$NAME" and "${NAME}" (names of at most 254 letters and digits; an unbraced name ends at the first other character, "_" included) in
// the NUL-terminated text of buffer, in place, never writing past size bytes;
// the last byte is always set to NUL, so a longer result is cut there. A
// backslash protects the next character; unset (or empty) variables stay as
// written.
VYX_EXPORT void ExpandDollarVariables(char* buffer, size_t size);

#endif
