// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Loading desktop entries (fields, translations, actions and bad files),
// saving them and merging them.

#include "desktopentry/desktopentry_p.h"
#include "support/child_process.h"
#include "support/files.h"
#include "support/temp_home.h"
#include "support/text_checks.h"

#include <vyxdesktopentry.h>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace {

using vyxtest::ScopedEnv;
using vyxtest::TempHome;
using Strings = std::vector<std::string>;

const Vyx::tagged_bool<SaveEmptyFields_tag> kSkipEmpty(false), kSaveEmpty(true);

std::string data(const char* name)
{
    return std::string(VYX_TEST_DATA_DIR) + "/desktop/" + name;
}

// The language list is decided once per process: each case sets its
// environment before the first entry is made.
TEST(EntryLoad, FieldsTranslationsActionsAndLineEnds)
{
    ScopedEnv language("LANGUAGE", "de:ru:fr");
    VyxDesktopEntry entry(data("browser.desktop"));
    ASSERT_TRUE(entry.isLoaded());
    EXPECT_EQ(entry.localName(), "Webbrowser");  // the earlier language wins
    EXPECT_EQ(entry.localKeywords(), (Strings {"Internet", "WWW", "Netz"}));
    EXPECT_EQ(entry.localIconOrFallback(), "web-browser");
    EXPECT_EQ(entry.getUnknownValue("X-Vendor-Build"), "2024.1");
    EXPECT_EQ(entry.getUnknownValue("Name[de]"), "");
    EXPECT_EQ(entry.getUnknownValue(nullptr), "");

    ASSERT_EQ(entry.actions().size(), 2u);
    EXPECT_EQ(entry.actions()[1].icon(), "private-browsing");
    EXPECT_EQ(entry.actions()[0].localCommentOrFallback(), "");

    // A byte order mark, CR LF line ends, and booleans that are strict.
    VyxDesktopEntry crlf(data("crlf-bom.desktop"));
    ASSERT_TRUE(crlf.isLoaded());
    EXPECT_EQ(crlf.localName(), "Texteditor");
    EXPECT_EQ(crlf.categories(), (Strings {"Utility", "TextEditor"}));
    EXPECT_TRUE(crlf.noDisplay());  // "True" counts
    EXPECT_TRUE(crlf.hasHidden());
    EXPECT_FALSE(crlf.hidden());  // "TRUE" does not, on purpose

    // Odd spacing, repeated keys, keys before any group and action groups
    // that lack a name.
    VyxDesktopEntry odd(data("odd.desktop"));
    ASSERT_TRUE(odd.isLoaded());
    EXPECT_EQ(odd.name(), "Spaced Out");
    EXPECT_EQ(odd.exec(), "spaced --second");  // a repeated key keeps its last value
    EXPECT_FALSE(odd.prefersNonDefaultGPU());  // "yes" is not true
    EXPECT_TRUE(odd.hasPrefersNonDefaultGPU());
    EXPECT_EQ(odd.getUnknownValue("StrayKey"), "");  // outside the group: not ours
    ASSERT_EQ(odd.actions().size(), 1u);  // "gone" has no name anywhere
    EXPECT_EQ(odd.actions()[0].id(), "kept");
    EXPECT_EQ(odd.actions()[0].onlyShowIn(), Strings {"Vyx"});

    // An action's translations: names and languages compare ignoring case,
    // the first non-empty one in language order wins; in the main group the
    // translated keys compare exactly, and the others stay unknown in file
    // order.
    TempHome world;
    VyxDesktopEntry t(world.writeFile(
        "t.desktop", "[Desktop Entry]\nName=App\nName[fr]=Appli\nNAME[de]=Upper\nX-First=1\nName[ru]=Prilozhenie\n"
                     "Comment[pl]=Polski\nActions=go;\n"
                     "[Desktop Action go]\nname=Go\nNAME[DE]=\nname[Ru]=Idti\nName[fr]=Aller\nCOMMENT[fr]=Partir\n"
                     "icon[de]=gehen\n"));
    ASSERT_TRUE(t.isLoaded());
    EXPECT_EQ(t.localName(), "Prilozhenie");
    EXPECT_EQ(t.unknowns(), (std::vector<std::pair<std::string, std::string>> {
                                {"NAME[de]", "Upper"}, {"X-First", "1"}, {"Comment[pl]", "Polski"}}));
    ASSERT_EQ(t.actions().size(), 1u);
    const VyxDesktopAction& go = t.actions()[0];
    EXPECT_EQ(go.name(), "Go");
    EXPECT_EQ(go.localName(), "Idti");
    EXPECT_EQ(go.localComment(), "Partir");
    EXPECT_EQ(go.localIcon(), "gehen");
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

TEST(EntryLoad, PathsValidityAndBadFiles)
{
    vyxtest::TempHome world;
    world.writeFile("rel/app.desktop", "[Other]\nKey=1\n");
    ASSERT_EQ(chdir(world.path("rel").c_str()), 0);
    VyxDesktopEntry entry("app.desktop");
    EXPECT_EQ(entry.filePath(), world.path("rel") + "/app.desktop");
    EXPECT_TRUE(entry.isLoaded());
    EXPECT_TRUE(entry.isValid());  // parses, even without a "Desktop Entry" group

    entry.setFilePath(world.path("missing.desktop"));
    EXPECT_FALSE(entry.isLoaded());
    EXPECT_FALSE(entry.isValid());
    EXPECT_FALSE(entry.load());

    EXPECT_FALSE(VyxDesktopEntry().load());

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
    VyxDesktopEntry huge(file);
    EXPECT_EQ(huge.name(), "Huge");
    EXPECT_EQ(huge.comment().size(), 100u << 20);
}

TEST(EntrySave, RoundTripKeepsEveryField)
{
    ScopedEnv language("LANGUAGE", "de");
    TempHome world;
    for (const char* name :
         {"browser.desktop", "crlf-bom.desktop", "odd.desktop", "folder.directory", "link.desktop"}) {
        SCOPED_TRACE(name);
        VyxDesktopEntry original(data(name));
        ASSERT_TRUE(original.isLoaded());
        std::string copy = world.path(name);
        ASSERT_TRUE(original.saveAs(copy, kSkipEmpty));
        EXPECT_EQ(original.filePath(), data(name));  // still bound to its own file
        EXPECT_TRUE(VyxDesktopEntry(copy).identicalTo(original)) << vyxtest::readFile(copy);
    }
}

TEST(EntrySave, KeyOrderEmptyFieldsLinksAndFailures)
{
    ScopedEnv language("LANGUAGE", "ru");
    TempHome world;
    VyxDesktopEntry entry;
    entry.setFilePath(world.path("min.desktop"));
    entry.setType("Application");
    entry.setName("Minimal");
    entry.setUnknowns({{"Name[de]", "Minimal-de"}, {"X-Foo", "bar"}});
    entry.setLocalName("Минимум");
    entry.setCategories({"A", "B"});
    VyxDesktopAction broken("broken"), open("open");
    broken.setName("No exec");
    open.setName("Open");
    open.setExec("min --open");
    entry.setActions({broken, open});
    ASSERT_TRUE(entry.save(kSkipEmpty));
    EXPECT_EQ(vyxtest::readFile(world.path("min.desktop")),
              "[Desktop Entry]\nName = Minimal\nName[ru] = Минимум\nType = Application\nActions = open;\n"
              "Categories = A;B\nName[de] = Minimal-de\nX-Foo = bar\n\n\n"
              "[Desktop Action open]\nName = Open\nExec = min --open\n");

    ASSERT_TRUE(entry.save(kSaveEmpty));
    VyxDesktopEntry all(world.path("min.desktop"));
    EXPECT_TRUE(all.hasNoDisplay());
    EXPECT_FALSE(all.noDisplay());
    EXPECT_TRUE(all.hasSingleMainWindow());
    std::string text = vyxtest::readFile(world.path("min.desktop"));
    EXPECT_HAS(text, "GenericName = \n", "TryExec = \n", "Keywords[ru] = \n", "MimeType = \n", "Version = \n");
    EXPECT_LACKS(text, "URL");  // only for links

    // Replaced at once, through a link, keeping the permissions.
    std::string real = world.writeFile("real/app.desktop", "[Desktop Entry]\nName=Old\n");
    chmod(real.c_str(), 0640);
    std::string link = world.path("link.desktop");
    ASSERT_EQ(symlink(real.c_str(), link.c_str()), 0);

    VyxDesktopEntry linked(link);
    linked.setName("New");
    ASSERT_TRUE(linked.save(kSkipEmpty));
    struct stat st;
    ASSERT_EQ(lstat(link.c_str(), &st), 0);
    EXPECT_TRUE(S_ISLNK(st.st_mode));  // the link stays a link
    EXPECT_EQ(vyxtest::fileMode(real), 0640u);
    EXPECT_EQ(VyxDesktopEntry(real).name(), "New");

    EXPECT_EQ(vyxtest::listDir(world.path("real")), Strings {"app.desktop"});  // no temporary left behind

    // Failures are reported.
    EXPECT_FALSE(VyxDesktopEntry().save(kSkipEmpty));
    VyxDesktopEntry lost;
    lost.setFilePath(world.path("missing/dir/app.desktop"));
    lost.setName("x");
    EXPECT_EQ(vyxtest::stderrOf([&] { EXPECT_FALSE(lost.save(kSkipEmpty)); }),
              "libvyxcore: VyxDesktopEntry::save() can't save file " + world.path("missing/dir/app.desktop") + "\n");
    EXPECT_TRUE(lost.isValid());  // set even after a failed save (kept)
}

// Each field alone on an otherwise empty entry: it is written under its
// own key, read back into itself, compared, copied, inherited, overridden
// and cleared by a reload as a list or a translation is. Then one value set
// on both sides of a merge.
TEST(EntryFields, EachFieldOnItsOwnAndMergedOverAnother)
{
    ScopedEnv language("LANGUAGE", "de");
    TempHome world;
    struct Field {
        const char* line;  // what the saved file holds
        void (*set)(VyxDesktopEntry&);
        bool clearedByReload;
    };
    // One row a field.
    // clang-format off
    const Field fields[] = {
        {"Name = n\n", [](VyxDesktopEntry& e) { e.setName("n"); }, true},
        {"Name[de] = ln\n", [](VyxDesktopEntry& e) { e.setLocalName("ln"); }, true},
        {"GenericName = g\n", [](VyxDesktopEntry& e) { e.setGenericName("g"); }, false},
        {"GenericName[de] = lg\n", [](VyxDesktopEntry& e) { e.setLocalGenericName("lg"); }, true},
        {"Type = Application\n", [](VyxDesktopEntry& e) { e.setType("Application"); }, false},
        {"TryExec = t\n", [](VyxDesktopEntry& e) { e.setTryExec("t"); }, false},
        {"NoDisplay = true\n", [](VyxDesktopEntry& e) { e.setNoDisplay(true); }, false},
        {"Comment = c\n", [](VyxDesktopEntry& e) { e.setComment("c"); }, false},
        {"Comment[de] = lc\n", [](VyxDesktopEntry& e) { e.setLocalComment("lc"); }, true},
        {"Exec = x\n", [](VyxDesktopEntry& e) { e.setExec("x"); }, false},
        {"Actions = a;\n",
         [](VyxDesktopEntry& e) { VyxDesktopAction a("a"); a.setName("A"); a.setExec("x"); e.setActions({a}); }, true},
        {"Icon = i\n", [](VyxDesktopEntry& e) { e.setIcon("i"); }, false},
        {"Icon[de] = li\n", [](VyxDesktopEntry& e) { e.setLocalIcon("li"); }, true},
        {"Hidden = false\n", [](VyxDesktopEntry& e) { e.setHidden(false); }, false},
        {"Path = /p\n", [](VyxDesktopEntry& e) { e.setPath("/p"); }, false},
        {"Terminal = true\n", [](VyxDesktopEntry& e) { e.setTerminal(true); }, false},
        {"StartupNotify = false\n", [](VyxDesktopEntry& e) { e.setStartupNotify(false); }, false},
        {"StartupWMClass = w\n", [](VyxDesktopEntry& e) { e.setStartupWMClass("w"); }, false},
        {"PrefersNonDefaultGPU = true\n", [](VyxDesktopEntry& e) { e.setPrefersNonDefaultGPU(true); }, false},
        {"SingleMainWindow = true\n", [](VyxDesktopEntry& e) { e.setSingleMainWindow(true); }, false},
        {"MimeType = a/b;c/d\n", [](VyxDesktopEntry& e) { e.setMimeType({"a/b", "c/d"}); }, true},
        {"SortOrder = s\n", [](VyxDesktopEntry& e) { e.setSortOrder({"s"}); }, true},
        {"URL = u\n", [](VyxDesktopEntry& e) { e.setType("Link"); e.setUrl("u"); }, false},
        {"Categories = k\n", [](VyxDesktopEntry& e) { e.setCategories({"k"}); }, true},
        {"OnlyShowIn = o\n", [](VyxDesktopEntry& e) { e.setOnlyShowIn({"o"}); }, true},
        {"NotShowIn = no\n", [](VyxDesktopEntry& e) { e.setNotShowIn({"no"}); }, true},
        {"Version = 1.5\n", [](VyxDesktopEntry& e) { e.setVersion("1.5"); }, false},
        {"Keywords = w1;w2\n", [](VyxDesktopEntry& e) { e.setKeywords({"w1", "w2"}); }, true},
        {"Keywords[de] = lw\n", [](VyxDesktopEntry& e) { e.setLocalKeywords({"lw"}); }, true},
        {"X-Other = v\n", [](VyxDesktopEntry& e) { e.setUnknowns({{"X-Other", "v"}}); }, true},
    };
    // clang-format on
    const std::string blankFile = world.writeFile("blank.desktop", "[Desktop Entry]\n");
    const VyxDesktopEntry blank(blankFile);
    for (const Field& field : fields) {
        SCOPED_TRACE(field.line);
        VyxDesktopEntry entry(blankFile);
        field.set(entry);
        EXPECT_FALSE(entry.identicalTo(blank));
        const std::string file = world.path("one.desktop");
        ASSERT_TRUE(entry.saveAs(file, kSkipEmpty));
        EXPECT_HAS(vyxtest::readFile(file), field.line);
        EXPECT_TRUE(VyxDesktopEntry(file).identicalTo(entry)) << vyxtest::readFile(file);

        VyxDesktopEntry copied(blankFile), inherited(blankFile), overridden(blankFile);
        copied.copyFrom(entry);
        inherited.inheritFrom(entry);
        overridden.overrideFrom(entry);
        for (const VyxDesktopEntry* merged : {&copied, &inherited, &overridden})
            EXPECT_TRUE(merged->identicalTo(entry));
        copied.overrideFrom(blank);  // an empty source changes nothing
        EXPECT_TRUE(copied.identicalTo(entry));
        copied.copyFrom(blank);  // but a copy takes everything, empty or not
        EXPECT_TRUE(copied.identicalTo(blank));

        ASSERT_TRUE(entry.load());  // the entry is still bound to the blank file
        EXPECT_EQ(entry.identicalTo(blank), field.clearedByReload);
    }

    // A value set on both sides: inheriting keeps ours, overriding takes
    // theirs.
    VyxDesktopEntry system, user, inherited, overridden;
    system.setName("System");
    system.setHidden(true);
    user.setName("Mine");
    user.setHidden(false);
    inherited.copyFrom(user);
    inherited.inheritFrom(system);
    overridden.copyFrom(system);
    overridden.overrideFrom(user);
    EXPECT_TRUE(inherited.identicalTo(user));
    EXPECT_TRUE(overridden.identicalTo(user));
}

}  // namespace
