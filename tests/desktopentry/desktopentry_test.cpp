// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Loading desktop entries: fields, translations, actions and bad files.

#include "desktopentry/desktopentry_p.h"
#include "support/child_process.h"
#include "support/files.h"
#include "support/temp_home.h"

#include <vyxdesktopentry.h>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

using vyxtest::ScopedEnv;
using Strings = std::vector<std::string>;

std::string data(const char* name)
{
    return std::string(VYX_TEST_DATA_DIR) + "/desktop/" + name;
}

// The language list is decided once per process: each case sets its
// environment before the first entry is made.
TEST(EntryLoad, FieldsTranslationsActionsAndLineEnds)
{
    ScopedEnv language("LANGUAGE", "de:fr");
    VyxDesktopEntry entry(data("browser.desktop"));
    ASSERT_TRUE(entry.isLoaded());
    EXPECT_EQ(entry.name(), "Web Browser");
    EXPECT_EQ(entry.localName(), "Webbrowser");  // the earlier language wins
    EXPECT_EQ(entry.localGenericName(), "Browser für das Netz");
    EXPECT_EQ(entry.localComment(), "Im Internet surfen");
    EXPECT_EQ(entry.localKeywords(), (Strings {"Internet", "WWW", "Netz"}));
    EXPECT_EQ(entry.localIconOrFallback(), "web-browser");
    EXPECT_EQ(entry.mimeType().size(), 5u);
    EXPECT_EQ(entry.categories(), (Strings {"Network", "WebBrowser"}));
    EXPECT_TRUE(entry.hasTerminal());
    EXPECT_FALSE(entry.terminal());
    EXPECT_TRUE(entry.startupNotify());
    EXPECT_FALSE(entry.hasNoDisplay());
    EXPECT_EQ(entry.getUnknownValue("X-Vendor-Build"), "2024.1");
    EXPECT_EQ(entry.getUnknownValue("Name[ru]"), "Веб-браузер");  // other languages are kept
    EXPECT_EQ(entry.getUnknownValue("Name[de]"), "");
    EXPECT_EQ(entry.getUnknownValue(nullptr), "");

    ASSERT_EQ(entry.actions().size(), 2u);
    const VyxDesktopAction& privateWindow = entry.actions()[1];
    EXPECT_EQ(privateWindow.id(), "new-private-window");
    EXPECT_EQ(privateWindow.localName(), "Neues privates Fenster");
    EXPECT_EQ(privateWindow.icon(), "private-browsing");
    EXPECT_EQ(privateWindow.exec(), "/usr/lib/browser/browser --private-window %u");
    EXPECT_EQ(entry.actions()[0].localCommentOrFallback(), "");

    // A byte order mark, CR LF line ends, and booleans that are strict.
    VyxDesktopEntry crlf(data("crlf-bom.desktop"));
    ASSERT_TRUE(crlf.isLoaded());
    EXPECT_EQ(crlf.type(), "Application");
    EXPECT_EQ(crlf.localName(), "Texteditor");
    EXPECT_EQ(crlf.exec(), "editor %F");
    EXPECT_EQ(crlf.categories(), (Strings {"Utility", "TextEditor"}));
    EXPECT_TRUE(crlf.noDisplay());  // "True" counts
    EXPECT_TRUE(crlf.hasHidden());
    EXPECT_FALSE(crlf.hidden());  // "TRUE" does not, on purpose
}

TEST(EntryLoad, WithoutLanguagesEveryTranslationIsUnknown)
{
    ScopedEnv language("LANGUAGE", nullptr), all("LC_ALL", nullptr), lang("LANG", nullptr);
    VyxDesktopEntry entry(data("browser.desktop"));
    EXPECT_EQ(entry.localName(), "");
    EXPECT_EQ(entry.localNameOrFallback(), "Web Browser");
    EXPECT_EQ(entry.getUnknownValue("Name[de]"), "Webbrowser");
    EXPECT_EQ(entry.actions()[0].localNameOrFallback(), "New Window");
}

TEST(EntryLoad, LocaleIsReducedToOneLanguage)
{
    ScopedEnv language("LANGUAGE", nullptr), all("LC_ALL", nullptr), lang("LANG", "ru_RU.UTF-8");
    EXPECT_EQ(GetLangPref(), Strings {"ru"});
    VyxDesktopEntry entry(data("browser.desktop"));
    EXPECT_EQ(entry.localName(), "Веб-браузер");
    EXPECT_EQ(entry.actions()[0].localName(), "Новое окно");
}

TEST(EntryLoad, LanguageListRules)
{
    // A field with a "." is reduced; "ru", "en", "de", "fr" anywhere decide.
    ScopedEnv language("LANGUAGE", "pt_BR:sr_RS.UTF-8@latin:de_AT.UTF-8::x");
    EXPECT_EQ(GetLangPref(), (Strings {"pt_BR", "sr", "de", "x"}));
}

TEST(EntryLoad, OddSpacingDuplicatesStrayKeysAndActionGroups)
{
    VyxDesktopEntry entry(data("odd.desktop"));
    ASSERT_TRUE(entry.isLoaded());
    EXPECT_EQ(entry.name(), "Spaced Out");
    EXPECT_EQ(entry.exec(), "spaced --second");  // a repeated key keeps its last value
    EXPECT_TRUE(entry.terminal());
    EXPECT_FALSE(entry.prefersNonDefaultGPU());  // "yes" is not true
    EXPECT_TRUE(entry.hasPrefersNonDefaultGPU());
    EXPECT_EQ(entry.notShowIn(), Strings {"KDE"});
    EXPECT_EQ(entry.getUnknownValue("StrayKey"), "");  // outside the group: not ours
    ASSERT_EQ(entry.actions().size(), 1u);  // "gone" has no name anywhere
    EXPECT_EQ(entry.actions()[0].id(), "kept");
    EXPECT_EQ(entry.actions()[0].onlyShowIn(), Strings {"Vyx"});
}

TEST(EntryLoad, PathsAndValidity)
{
    vyxtest::TempHome world;
    world.writeFile("rel/app.desktop", "[Other]\nKey=1\n");
    ASSERT_EQ(chdir(world.path("rel").c_str()), 0);
    VyxDesktopEntry entry("app.desktop");
    EXPECT_EQ(entry.filePath(), world.path("rel") + "/app.desktop");
    EXPECT_TRUE(entry.isLoaded());
    EXPECT_TRUE(entry.isValid());  // parses, even without a "Desktop Entry" group
    EXPECT_EQ(entry.name(), "");

    entry.setFilePath(world.path("missing.desktop"));
    EXPECT_FALSE(entry.isLoaded());
    EXPECT_FALSE(entry.isValid());
    EXPECT_FALSE(entry.load());

    VyxDesktopEntry empty;
    EXPECT_FALSE(empty.isLoaded());
    EXPECT_FALSE(empty.load());

    // Loading again resets the lists.
    std::string file = world.writeFile("a.desktop", "[Desktop Entry]\nName=A\nCategories=X;Y\nExtra=1\n");
    VyxDesktopEntry reloaded(file);
    ASSERT_EQ(reloaded.categories().size(), 2u);
    world.writeFile("a.desktop", "[Desktop Entry]\nName=B\n");
    EXPECT_TRUE(reloaded.load());
    EXPECT_EQ(reloaded.name(), "B");
    EXPECT_TRUE(reloaded.categories().empty());
    EXPECT_TRUE(reloaded.unknowns().empty());
}

TEST(EntryLoad, BadFilesGiveDefinedAnswers)
{
    vyxtest::TempHome world;
    std::string garbage;
    for (int i = 0; i < 4096; ++i)
        garbage += static_cast<char>((i * 7919) & 0xFF);
    std::string groups;
    for (int i = 0; i < 10000; ++i)
        groups += "[Group " + std::to_string(i) + "]\nKey=" + std::to_string(i) + "\n";
    const std::string files[] = {world.writeFile("garbage.desktop", garbage), world.writeFile("empty.desktop", ""),
                                 world.makeDir("dir.desktop"),
                                 world.writeFile("groups.desktop", "[Desktop Entry]\nName=Many\n" + groups)};
    for (const std::string& file : files) {
        VyxDesktopEntry entry(file);  // must not crash
        SCOPED_TRACE(file);
        EXPECT_EQ(entry.isLoaded(), entry.isValid());
    }
    EXPECT_FALSE(VyxDesktopEntry(world.path("dir.desktop")).isLoaded());
    EXPECT_EQ(VyxDesktopEntry(world.path("groups.desktop")).name(), "Many");

    std::string locked = world.writeFile("locked.desktop", "[Desktop Entry]\nName=Secret\n");
    chmod(locked.c_str(), 0600);
    vyxtest::ChildOptions options;
    options.unprivileged = true;
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, [&] { EXPECT_FALSE(VyxDesktopEntry(locked).isLoaded()); }));

    std::string file = world.path("huge.desktop");
    vyxtest::writeRepeated(file, "[Desktop Entry]\nName=Huge\nComment=", 'x', 100u << 20, "\n");
    VyxDesktopEntry entry(file);
    ASSERT_TRUE(entry.isLoaded());
    EXPECT_EQ(entry.name(), "Huge");
    EXPECT_EQ(entry.comment().size(), 100u << 20);
}

// An action's translations: names and languages compare ignoring case, the
// first non-empty one in language order wins; in the main group the
// translated keys compare exactly, and the others stay unknown in file order.
TEST(EntryLoad, TranslationsOfActionsAndUnknownKeysInOrder)
{
    ScopedEnv language("LANGUAGE", "de:ru:fr");
    vyxtest::TempHome world;
    const std::string file = world.writeFile(
        "t.desktop", "[Desktop Entry]\nName=App\nName[fr]=Appli\nNAME[de]=Upper\nX-First=1\nName[ru]=Prilozhenie\n"
                     "Comment[pl]=Polski\nActions=go;\n"
                     "[Desktop Action go]\nname=Go\nNAME[DE]=\nname[Ru]=Idti\nName[fr]=Aller\nCOMMENT[fr]=Partir\n"
                     "icon[de]=gehen\n");
    VyxDesktopEntry entry(file);
    ASSERT_TRUE(entry.isLoaded());
    EXPECT_EQ(entry.localName(), "Prilozhenie");
    EXPECT_EQ(entry.getUnknownValue("NAME[de]"), "Upper");
    EXPECT_EQ(entry.getUnknownValue("Comment[pl]"), "Polski");
    const std::vector<std::pair<std::string, std::string>> unknowns = {
        {"NAME[de]", "Upper"}, {"X-First", "1"}, {"Comment[pl]", "Polski"}};
    EXPECT_EQ(entry.unknowns(), unknowns);
    ASSERT_EQ(entry.actions().size(), 1u);
    const VyxDesktopAction& go = entry.actions()[0];
    EXPECT_EQ(go.name(), "Go");
    EXPECT_EQ(go.localName(), "Idti");
    EXPECT_EQ(go.localComment(), "Partir");
    EXPECT_EQ(go.localIcon(), "gehen");
}

}  // namespace
