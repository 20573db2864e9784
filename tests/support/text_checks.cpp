// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/text_checks.h"

namespace vyxtest {

namespace {

testing::AssertionResult check(const char* textExpr, const std::string& text, const std::vector<std::string>& pieces,
                               bool wanted)
{
    for (const std::string& piece : pieces) {
        if ((text.find(piece) != std::string::npos) != wanted)
            return testing::AssertionFailure()
                   << textExpr << (wanted ? " lacks \"" : " holds \"") << piece << "\"; it is:\n"
                   << text;
    }
    return testing::AssertionSuccess();
}

}  // namespace

testing::AssertionResult containsAll(const char* textExpr, const char*, const std::string& text,
                                     const std::vector<std::string>& pieces)
{
    return check(textExpr, text, pieces, true);
}

testing::AssertionResult containsNone(const char* textExpr, const char*, const std::string& text,
                                      const std::vector<std::string>& pieces)
{
    return check(textExpr, text, pieces, false);
}

std::string stderrOf(const std::function<void()>& body)
{
    testing::internal::CaptureStderr();
    body();
    return testing::internal::GetCapturedStderr();
}

}  // namespace vyxtest
