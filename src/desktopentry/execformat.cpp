// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxdesktopentry.h"

#include <cstring>

namespace {

bool isSet(const char* value)
{
    return value && *value;
}

bool hasFileScheme(const char* url)
{
    return isSet(url) && std::strstr(url, "file://");
}

// The file part of a "file://" URL: from the second slash on, so
// "file:///tmp/a" gives "//tmp/a" (kept as it always was).
const char* filePart(const char* url)
{
    return std::strstr(url, "file://") + 6;
}

// Builds the command line; pos is where the current "%" stands in format.
class Expander {
public:
    Expander(ExecFormatString& e, const std::string& format) : m_e(e), m_format(format) { }

    std::string run();

private:
    bool formatHas(const char* code) const { return m_format.find(code) != std::string::npos; }
    bool precededByQuote() const { return m_pos >= 1 && m_format[m_pos - 1] == '"'; }

    // A single value: as it is behind a quote, when it starts with a quote
    // or needs no quoting; else quoted.
    void single(const char* value)
    {
        if (precededByQuote() || value[0] == '"' || !Vyx::needDoublequotes(value))
            m_out += value;
        else
            m_out += Vyx::quoteArg(value);
    }
    // The file part of a URL, under the quoting rule of the whole URL.
    void singleFilePart(const char* url)
    {
        const char* part = filePart(url);
        if (precededByQuote() || url[0] == '"' || !Vyx::needDoublequotes(url)) {
            if (url[0] == '"')
                m_out += '"';
            m_out += part;
        } else {
            m_out += Vyx::quoteArg(part);
        }
    }
    void listItem(const char* item, const char* written)
    {
        if (item[0] == '"' || !Vyx::needDoublequotes(item))
            m_out += written;
        else
            m_out += Vyx::quoteArg(written);
    }
    // A list followed by separators; the last character is dropped when
    // there is a separator, even when every item was skipped (kept).
    void list(std::vector<const char*>& items, bool fileParts)
    {
        for (const char* item : items) {
            if (!item)
                continue;
            if (fileParts) {
                if (!hasFileScheme(item))
                    continue;
                listItem(item, filePart(item));
            } else {
                listItem(item, item);
            }
            if (m_e.separator)
                m_out += m_e.separator;
        }
        if (m_e.separator && !m_out.empty())
            m_out.pop_back();
        items.clear();
    }
    // A first list item used for a single code; a leading quote that is not
    // quoted away is doubled (kept as it always was).
    void doubledQuoteItem(const char* item)
    {
        // An item that starts with a quote is always copied as it is.
        if (item[0] == '"')
            m_out += '"';
        single(item);
    }

    void fieldF();
    void fieldFiles();
    void fieldU();
    void fieldUrls();

    ExecFormatString& m_e;
    const std::string& m_format;
    std::string m_out;
    size_t m_pos = 0;
};

void Expander::fieldF()
{
    if (isSet(m_e.file)) {
        single(m_e.file);
        m_e.file = nullptr;
    } else if (!formatHas("%F") && !m_e.files.empty()) {
        if (isSet(m_e.files[0]))
            single(m_e.files[0]);
        m_e.files.clear();
    } else if (!formatHas("%u") && hasFileScheme(m_e.url)) {
        singleFilePart(m_e.url);
        m_e.url = nullptr;
    } else if (!formatHas("%U") && !m_e.urls.empty() && hasFileScheme(m_e.urls[0])) {
        singleFilePart(m_e.urls[0]);
        m_e.urls.clear();
    }
}

void Expander::fieldFiles()
{
    if (!m_e.files.empty()) {
        list(m_e.files, false);
    } else if (!formatHas("%U") && !m_e.urls.empty()) {
        list(m_e.urls, true);
    } else if (!formatHas("%f") && isSet(m_e.file)) {
        single(m_e.file);
        m_e.file = nullptr;
    } else if (!formatHas("%u") && hasFileScheme(m_e.url)) {
        singleFilePart(m_e.url);
        m_e.url = nullptr;
    }
}

void Expander::fieldU()
{
    if (isSet(m_e.url)) {
        single(m_e.url);
        m_e.url = nullptr;
    } else if (!formatHas("%U") && !m_e.urls.empty()) {
        if (isSet(m_e.urls[0]))
            doubledQuoteItem(m_e.urls[0]);
        m_e.urls.clear();
    } else if (!formatHas("%F") && !m_e.files.empty()) {
        if (isSet(m_e.files[0]))
            doubledQuoteItem(m_e.files[0]);
        m_e.files.clear();
    }
}

void Expander::fieldUrls()
{
    if (!m_e.urls.empty())
        list(m_e.urls, false);
    else if (!formatHas("%F") && !m_e.files.empty())
        list(m_e.files, false);
}

std::string Expander::run()
{
    size_t reserve = m_format.size() + 100 + 2;
    for (const char* value : {m_e.file, m_e.url, m_e.caption, m_e.location})
        reserve += value ? std::strlen(value) : 0;
    reserve += (m_e.icon ? std::strlen(m_e.icon) : 0) + 7;
    for (const auto* list : {&m_e.files, &m_e.urls}) {
        for (const char* item : *list)
            reserve += (item ? std::strlen(item) : 0) + 3;
    }
    m_out.reserve(reserve);

    for (m_pos = 0; m_pos < m_format.size(); ++m_pos) {
        char c = m_format[m_pos];
        if (c != '%') {
            m_out += c;
            continue;
        }
        if (m_pos + 1 >= m_format.size())
            return std::string();  // a lone "%" at the end spoils the whole line
        char code = m_format[m_pos + 1];
        switch (code) {
        case '%':
            m_out += "%%";
            break;
        case 'f':
            fieldF();
            break;
        case 'F':
            fieldFiles();
            break;
        case 'u':
            fieldU();
            break;
        case 'U':
            fieldUrls();
            break;
        case 'i':
            if (isSet(m_e.icon)) {
                m_out += "--icon ";
                single(m_e.icon);
                m_e.icon = nullptr;
            }
            break;
        case 'c':
            if (isSet(m_e.caption)) {
                single(m_e.caption);
                m_e.caption = nullptr;
            }
            break;
        case 'k':
            if (isSet(m_e.location)) {
                single(m_e.location);
                m_e.location = nullptr;
            }
            break;
        default:
            break;  // deprecated and unknown codes vanish
        }
        ++m_pos;
    }
    if (!m_out.empty() && m_out.back() == ' ')
        m_out.pop_back();
    return m_out;
}

}  // namespace

std::string ExecFormatString::toString()
{
    if (!isSet(format))
        return std::string();
    std::string expanded = format;
    if (!std::strchr(format, '%')) {
        if (isSet(file))
            expanded += " %f";
        else if (!files.empty())
            expanded += " %F";
        else if (isSet(url))
            expanded += " %u";
        else if (!urls.empty())
            expanded += " %U";
    }
    return Expander(*this, expanded).run();
}
