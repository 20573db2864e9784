// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The INI reader: the writer's document's answers for the same bytes, on
// hand-made edge cases, on every INI-style file installed here and on a
// generated corpus; memory bounded by the file's size.

#include "core/inireader_p.h"
#include "ini_difference.h"
#include "support/child_process.h"
#include "support/files.h"
#include "support/temp_home.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using Vyx::detail::iniDifference;
using Vyx::detail::IniReader;

std::string differenceOf(const std::string& text)
{
    return iniDifference(text.data(), text.size());
}

TEST(IniReader, ReadsEdgeCasesLongLinesAndManyNamesAsTheDocumentDoes)
{
    const std::string cases[] = {
        "",
        "\xEF\xBB\xBF[A]\nk=v\n",
        "\xEF\xBB\xBF\xEF\xBB\xBF[A]\nk=v\n",
        "[A]\r\nk = v \r\nl=\tw\t\r\n",
        "[A]\rk=v\rl=w",
        "[A]\n\rk=v\n\r\n\r",
        "top=1\n[]\nalso=2\n[A]\nk=v\n",
        "# file comment\n; more\n\n  # indented\n[A]\n#k=v\n;l=w\nm=x # not a comment\n",
        "[A]\nk=\nl=   \n= nameless\n  =also nameless\nno equals sign\n",
        "[A]\nurl=a=b==c\nk==\n",
        "[\n  B ]\nk=v\n[\nk=lost\n[C\nk=c\n[D]trailing\nk=d\n[ E\t]\n",
        "[A]\nKey=1\nkey=2\nKEY=3\n[a]\nother=4\nkey=5\n[B]\nkey=6\n",
        "[A]\nk=v\0hidden=1\n[B]\nx=y\n",
        "[A]\nk=\xff\xfe\xc3(\x80 bad utf-8\n[\xe4\xb8\xad]\n\xe4\xb8\xad=\xe4\xb8\xad\n",
        "[A]\nk=v\n[B]\n[A]\nl=w\n[b]\nm=x\n",
        "[A]\nk\t=\tv w \t\nk2 x = y\n[A]\nk =last\n",
        "[A]\r\n\r\n[B]\r\r\nk=v\r",
        "=\n[\n",
        // A '[' line without ']' names the group of the keys after it.
        "[A]\na=1\n[B\nb=2\nc=3\n[B\nb=4\n",
        "[A]\n[B\n# one\r\n  \r\n\t# two\r\n\r\nno key\n=\nk=v\n[C\n;x\n",
        "[A]\n[B\n#a\n\n#b\n  #c",
        "[A]\n[B\r\n#a\n #b\n[C]\nk=1\n[D\n   \n# c\nk=2\n[d\n\n# c\nk=3\n",
    };
    for (const std::string& text : cases)
        EXPECT_EQ(differenceOf(text), "") << "input: " << text;

    // The answers that callers rely on, spelled out.
    IniReader reader;
    const char text[] = "[A]\nKey=1\nother=x\nkey=2\n[\n  B ]\nk=v\n[a]\nKEY=3\n[C]\0k=1";
    reader.loadData(text, sizeof text - 1);
    ASSERT_EQ(reader.groupCount(), 3u);
    EXPECT_STREQ(reader.groupName(1), "B");
    std::vector<std::string> keys;
    reader.forEach(reader.group("a"), [&](const Vyx::detail::IniField& f) { keys.push_back(f.key); });
    EXPECT_EQ(keys, (std::vector<std::string> {"Key", "other"}));
    EXPECT_STREQ(reader.value("A", "kEy"), "3");
    EXPECT_EQ(reader.value("C", "k"), nullptr);

    // Long lines and many names.
    std::string many = "[A]\nlong=" + std::string(1 << 20, 'x') + " \n";
    for (int g = 0; g < 3000; ++g) {
        many += "[G" + std::to_string(g % 1500) + "]\n";
        for (int k = 0; k < 5; ++k)
            many += "Key" + std::to_string((g * 7 + k) % 11) + "=" + std::to_string(g) + "\n";
    }
    EXPECT_EQ(differenceOf(many), "");
}

TEST(IniReader, InstalledFilesAndTheSyntheticCorpusReadAsTheDocumentReadsThem)
{
    vyxtest::TempHome world;
    std::vector<std::string> files;
    vyxtest::findFiles("/usr/share/applications", ".desktop", 4, &files);
    vyxtest::findFiles("/usr/share/applications", "mimeapps.list", 0, &files);
    vyxtest::findFiles("/etc/xdg", "mimeapps.list", 0, &files);
    vyxtest::findFiles("/usr/share/icons", "index.theme", 1, &files);
    vyxtest::findFiles("/usr/share/sounds", "index.theme", 1, &files);
    vyxtest::findFiles("/usr/share/desktop-directories", ".directory", 0, &files);
    const size_t installed = files.size();
    ASSERT_GT(installed, 0u) << "no installed theme index or desktop file found";

    const char* script = "/work/shared/peers/scripts/make_desktop_corpus.sh";
    ASSERT_EQ(access(script, R_OK), 0) << "the synthetic corpus script is missing: " << script;
    const std::string corpus = world.path("corpus");
    const std::string command = std::string("bash ") + script + " '" + corpus + "' 2000 >/dev/null 2>&1";
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
    vyxtest::findFiles(corpus + "/applications", ".desktop", 2, &files);
    EXPECT_GE(files.size() - installed, 2000u);
    for (const std::string& file : files) {
        const std::string text = vyxtest::readFile(file);
        EXPECT_EQ(differenceOf(text), "") << file;
    }
}

// The sanitizers' allocator keeps freed blocks in quarantine, so growth
// costs them more resident memory than it costs the program. Its runtime is
// linked in exactly when it is in use.
extern "C" __attribute__((weak)) void __asan_init();
const size_t kSlack = __asan_init ? 3 : 1;

// Resident memory of this process in bytes.
size_t residentBytes()
{
    size_t pages = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    return resident * size_t(sysconf(_SC_PAGESIZE));
}

// Loads path in a child of its own, so that its resident memory is its own,
// asks check what was read, and bounds the growth by limit.
void expectLoadWithin(const std::string& path, size_t limit, const std::function<void(const IniReader&)>& check)
{
    VYX_EXPECT_CHILD(vyxtest::runInChild({}, [&] {
        const size_t before = residentBytes();
        IniReader reader;
        ASSERT_TRUE(reader.loadFile(path));
        check(reader);
        EXPECT_LT(residentBytes() - before, limit);
    }));
}

TEST(IniReader, HugeFilesLoadInMemoryBoundedByTheirSize)
{
    vyxtest::TempHome world;
    const std::string line = world.path("line.ini");
    const size_t lineSize = 100u << 20;
    vyxtest::writeRepeated(line, "[A]\nk=", 'x', lineSize);
    std::string keys = "[A]\n";
    for (int i = 0; i < 1000000; ++i)
        keys += "key" + std::to_string(i) + "=" + std::to_string(i % 7) + "\n";
    std::string groups;
    for (int i = 0; i < 100000; ++i)
        groups += "[group " + std::to_string(i) + "]\nk=" + std::to_string(i) + "\n";

    expectLoadWithin(line, lineSize + lineSize / 2, [&](const IniReader& reader) {
        ASSERT_NE(reader.value("a", "K"), nullptr);
        EXPECT_EQ(std::strlen(reader.value("a", "K")), lineSize);
    });
    expectLoadWithin(world.writeFile("keys.ini", keys), kSlack * 8 * keys.size(), [](const IniReader& reader) {
        size_t count = 0;
        reader.forEach(0, [&](const Vyx::detail::IniField&) { ++count; });
        EXPECT_EQ(count, 1000000u);
        EXPECT_STREQ(reader.value("A", "KEY999998"), "6");
    });
    expectLoadWithin(world.writeFile("groups.ini", groups), kSlack * 8 * groups.size(), [](const IniReader& reader) {
        EXPECT_EQ(reader.groupCount(), 100000u);
        EXPECT_STREQ(reader.value("GROUP 99999", "k"), "99999");
    });
}

}  // namespace
