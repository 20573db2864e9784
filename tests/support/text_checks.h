// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_TESTS_TEXT_CHECKS_H
#define VYXCORE_TESTS_TEXT_CHECKS_H

// Checks on text a program or the library printed: that it holds (or lacks)
// some pieces, with the whole text in the failure so the case can be read
// without running it again; and what a piece of code wrote to stderr.

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace vyxtest {

// Whether text holds every piece (wanted) or none of them; the failure names
// the first piece amiss and shows the whole text.
template <bool wanted>
testing::AssertionResult contains(const char* textExpr, const char*, const std::string& text,
                                  const std::vector<std::string>& pieces)
{
    for (const std::string& piece : pieces) {
        if ((text.find(piece) != std::string::npos) != wanted)
            return testing::AssertionFailure()
                   << textExpr << (wanted ? " lacks \"" : " holds \"") << piece << "\"; it is:\n"
                   << text;
    }
    return testing::AssertionSuccess();
}

// Runs body and returns what it printed on standard error.
std::string stderrOf(const std::function<void()>& body);

}  // namespace vyxtest

#define EXPECT_HAS(text, ...)                                                                                          \
    EXPECT_PRED_FORMAT2(::vyxtest::contains<true>, text, (std::vector<std::string> {__VA_ARGS__}))
#define EXPECT_LACKS(text, ...)                                                                                        \
    EXPECT_PRED_FORMAT2(::vyxtest::contains<false>, text, (std::vector<std::string> {__VA_ARGS__}))

#endif
