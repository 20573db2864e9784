// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxdesktopentry.h"

#include "core/environment_p.h"

#include <mutex>

namespace {

// A locale text reduced to a language code. Plain substring tests in this
// order, kept as they always were: a territory or modifier holding one of
// these codes decides the language.
std::string languageCode(const std::string& locale)
{
    for (const char* code : {"ru", "en", "de", "fr"}) {
        if (locale.find(code) != std::string::npos)
            return code;
    }
    if (locale.size() > 2 && locale[2] == '_')
        return locale.substr(0, 2);
    if (locale.size() == 2)
        return locale;
    return std::string();
}

std::vector<std::string> computeLanguages()
{
    std::vector<std::string> languages;
    if (const char* list = Vyx::detail::envValue("LANGUAGE")) {
        for (const std::string& field : Vyx::split(list, ":")) {
            std::string code = field.find('.') != std::string::npos ? languageCode(field) : field;
            if (!code.empty())
                languages.push_back(code);
        }
        return languages;
    }
    const char* locale = Vyx::detail::envValue("LC_ALL");
    if (!locale)
        locale = Vyx::detail::envValue("LANG");
    if (locale) {
        std::string code = languageCode(locale);
        if (!code.empty())
            languages.push_back(code);
    }
    return languages;
}

}  // namespace

std::vector<std::string> GetLangPref()
{
    static std::vector<std::string> languages;
    static std::once_flag once;
    std::call_once(once, [] { languages = computeLanguages(); });
    return languages;
}
