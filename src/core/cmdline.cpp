// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxcmdline.h"

#include "core/environment_p.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <string>

namespace {

constexpr size_t kMaxVariableName = 254;

const char* const kMessages[] = {
    "",
    "Unbalanced quotes",
    "Too many sets of quotes",
    "Cannot redirect output to more than one file",
    "No filename supplied to redirect output to",
    "No command supplied to pipe output to",
    "Redirection of input not implemented",
    "Cannot redirect and pipe out at the same time",
};

bool isQuote(char c)
{
    return c == '"' || c == '\'' || c == '`';
}

// Letters and digits only: "_" ends an unbraced name. Kept on purpose.
bool isNameChar(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) != 0;
}

// Copies src into a field of size bytes, cut to fit and NUL-terminated.
void copyField(char* field, size_t size, const char* src, size_t length)
{
    size_t n = length < size - 1 ? length : size - 1;
    std::memcpy(field, src, n);
    field[n] = '\0';
}

// The parser's state over one command line.
class Splitter {
public:
    Splitter(char* cmd, CmdLineInfo* info) : m_p(cmd), m_info(info) { }

    int run();

private:
    bool readWord();
    void putChar(char c);
    void endWord();
    int redirect();
    int pipe();

    char* m_p;
    CmdLineInfo* m_info;
    size_t m_used = 0;  // bytes of argText in use
    size_t m_wordStart = 0;
    bool m_wordOpen = false;
    bool m_redirectPending = false;
    bool m_redirectGiven = false;
    int m_error = CmdLineOk;
    char m_quotes[CmdLineMaxQuoteLevels];
    int m_depth = 0;
};

void Splitter::putChar(char c)
{
    m_wordOpen = true;
    // Keep room for the word's NUL; bytes beyond the text's room are dropped.
    if (m_used + 1 < sizeof m_info->argText)
        m_info->argText[m_used++] = c;
}

// Finishes the word in progress: an argument, or the pending output file.
void Splitter::endWord()
{
    if (!m_wordOpen)
        return;
    m_wordOpen = false;
    m_info->argText[m_used] = '\0';
    char* word = m_info->argText + m_wordStart;
    if (m_redirectPending) {
        copyField(m_info->redirectFile, sizeof m_info->redirectFile, word, m_used - m_wordStart);
        m_redirectPending = false;
        m_redirectGiven = true;
        m_used = m_wordStart;  // the file name is not an argument
        return;
    }
    m_info->argv[m_info->argc++] = word;
    if (m_used + 1 < sizeof m_info->argText)
        ++m_used;
    m_wordStart = m_used;
}

int Splitter::redirect()
{
    endWord();
    if (m_redirectGiven || m_redirectPending)
        return CmdLineRedirectTwice;
    ++m_p;
    if (*m_p == '>') {
        m_info->append = 1;
        ++m_p;
    }
    m_redirectPending = true;
    return CmdLineOk;
}

int Splitter::pipe()
{
    endWord();
    if (m_redirectGiven)
        return CmdLineRedirectAndPipe;
    ++m_p;
    while (*m_p && std::isspace(static_cast<unsigned char>(*m_p)))
        ++m_p;
    size_t length = std::strcspn(m_p, "\n");
    copyField(m_info->pipeCommand, sizeof m_info->pipeCommand, m_p, length);
    m_p += std::strlen(m_p);  // the pipe ends the line
    return length == 0 ? CmdLineNoPipeCommand : CmdLineOk;
}

// Reads one word. False when the parse must end (error or end of line).
bool Splitter::readWord()
{
    while (*m_p) {
        char c = *m_p;
        if (m_depth > 0) {
            if (c == m_quotes[m_depth - 1]) {
                // The outermost closing quote is dropped, inner ones are text.
                if (--m_depth > 0)
                    putChar(c);
                else
                    m_wordOpen = true;
                ++m_p;
                continue;
            }
            if (isQuote(c)) {
                if (m_depth == CmdLineMaxQuoteLevels) {
                    m_error = CmdLineTooManyQuotes;
                    return false;
                }
                m_quotes[m_depth++] = c;
                putChar(c);
                ++m_p;
                continue;
            }
        } else {
            if (std::isspace(static_cast<unsigned char>(c)))
                return true;
            if (isQuote(c)) {
                m_quotes[m_depth++] = c;
                m_wordOpen = true;  // even "" is a word
                ++m_p;
                continue;
            }
            if (c == '<') {
                m_error = CmdLineInputRedirect;
                return false;
            }
            if (c == '#') {
                *m_p = '\0';  // a comment: the rest of the line is gone
                return false;
            }
            if (c == '!' && !m_wordOpen) {
                putChar(c);
                ++m_p;
                return true;  // "!" at the start of a word is a word of its own
            }
            if (c == '>') {
                m_error = redirect();
                return m_error == CmdLineOk;
            }
            if (c == '|') {
                m_error = pipe();
                return false;
            }
        }
        if (c == '\\') {
            const char* next = m_p + 1;
            if (std::isdigit(static_cast<unsigned char>(next[0])) &&
                std::isdigit(static_cast<unsigned char>(next[1])) &&
                std::isdigit(static_cast<unsigned char>(next[2]))) {
                // Exactly three digits, even when more follow. Kept on purpose:
                // the digit check admits 8 and 9, which end the octal value early
                // ("\108" is byte 8, "\999" byte 0), and values past 255 keep
                // their low byte.
                const char digits[4] = {next[0], next[1], next[2], '\0'};
                unsigned value = 0;
                std::sscanf(digits, "%32o", &value);
                putChar(static_cast<char>(value & 0xFF));
                m_p += 4;
            } else if (*next) {
                putChar(*next);
                m_p += 2;
            } else {
                ++m_p;
            }
            continue;
        }
        if (c == '^' && m_p[1]) {
            putChar(m_p[1] == '?' ? static_cast<char>(127) : static_cast<char>(m_p[1] & 31));
            m_p += 2;
            continue;
        }
        putChar(c);
        ++m_p;
    }
    return true;
}

int Splitter::run()
{
    while (m_info->argc < CmdLineMaxArguments) {
        while (*m_p && std::isspace(static_cast<unsigned char>(*m_p)))
            ++m_p;
        if (!*m_p)
            break;
        bool goOn = readWord();
        if (m_error != CmdLineOk)
            break;
        // Kept on purpose: a quote left open at the end counts as closed, so
        // "Unbalanced quotes" is never reported.
        m_depth = 0;
        endWord();
        if (!goOn)
            break;
    }
    // An empty pipe command does not stop the parse, so a pending
    // redirection still turns it into code 4.
    if ((m_error == CmdLineOk || m_error == CmdLineNoPipeCommand) && m_redirectPending)
        m_error = CmdLineNoRedirectFile;
    return m_error;
}

}  // namespace

void ExpandDollarVariables(char* buffer, size_t size)
{
    if (!buffer || size == 0)
        return;
    buffer[size - 1] = '\0';
    size_t i = 0;
    while (buffer[i]) {
        if (buffer[i] == '\\') {
            i += buffer[i + 1] ? 2 : 1;  // the protected character stays as it is
            continue;
        }
        if (buffer[i] != '$') {
            ++i;
            continue;
        }
        size_t nameStart, nameLength, referenceLength;
        if (buffer[i + 1] == '{') {
            nameStart = i + 2;
            const char* close = std::strchr(buffer + nameStart, '}');
            nameLength = close ? static_cast<size_t>(close - (buffer + nameStart)) : 0;
            if (!close || nameLength == 0 || nameLength > kMaxVariableName) {
                ++i;
                continue;
            }
            referenceLength = nameLength + 3;  // "${" name "}"
        } else if (isNameChar(buffer[i + 1])) {
            nameStart = i + 1;
            nameLength = 0;
            while (nameLength < kMaxVariableName && isNameChar(buffer[nameStart + nameLength]))
                ++nameLength;
            referenceLength = nameLength + 1;
        } else {
            ++i;
            continue;
        }

        std::string name(buffer + nameStart, nameLength);
        const char* value = Vyx::detail::envValue(name.c_str());
        if (!value) {
            i += referenceLength;
            continue;
        }
        // Room for the value and what follows, cut at the buffer's last byte.
        size_t capacity = size - 1;
        size_t valueLength = std::min(std::strlen(value), capacity - i);
        size_t tail = i + referenceLength;
        size_t tailLength = std::strlen(buffer + tail);
        size_t newTail = i + valueLength;
        size_t keptTail = newTail >= capacity ? 0 : std::min(tailLength, capacity - newTail);
        std::memmove(buffer + newTail, buffer + tail, keptTail);
        std::memcpy(buffer + i, value, valueLength);
        buffer[newTail + keptTail] = '\0';
        i = newTail;  // values are not expanded again
    }
    buffer[size - 1] = '\0';
}

int MakeArgVector(char* cmd, CmdLineInfo* info)
{
    if (!info)
        return -1;
    std::memset(info, 0, sizeof *info);
    int error = CmdLineOk;
    if (cmd) {
        ExpandDollarVariables(cmd, CmdLineBufferSize);
        Splitter splitter(cmd, info);
        error = splitter.run();
    }
    if (error != CmdLineOk)
        info->argc = 0;
    int argc = info->argc;
    info->argv[argc] = nullptr;
    info->argv[argc + 1] = cmd;
    info->argv[argc + 2] = reinterpret_cast<char*>(info);
    info->argv[argc + 3] = nullptr;
    info->error = error;
    info->message = kMessages[error];
    return error;
}
