// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Icons for MIME types, names, files, directories, file-manager locations
// and URLs, over a theme built here, the installed MIME database and
// default applications written to mimeapps.list; and the installed themes.

#include "support/temp_home.h"

#include <vyxicontheme.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <unistd.h>

namespace {

using vyxtest::ScopedEnv;
using vyxtest::TempHome;

class MimeIcons : public ::testing::Test {
protected:
    void SetUp() override
    {
        std::string index = "[Icon Theme]\nName=Own\nInherits=hicolor\nDirectories=";
        std::string sections;
        for (const char* context : {"apps:Applications", "mimetypes:MimeTypes", "actions:Actions", "places:Places",
                                    "status:Status", "devices:Devices"}) {
            std::string dir = std::string("48x48/") + std::string(context).substr(0, std::string(context).find(':'));
            index += dir + ",";
            sections += "[" + dir + "]\nSize=48\nType=Fixed\nContext=" + (std::strchr(context, ':') + 1) + "\n";
        }
        world.writeFile("usr/share/icons/own/index.theme", index + "\n" + sections);
        for (const char* file :
             {"apps/viewer-icon.png", "apps/browser-icon.png", "mimetypes/application-pdf.png",
              "mimetypes/text-x-generic.png", "mimetypes/image-x-generic.png", "mimetypes/x-office-document.png",
              "actions/edit-thing.png", "actions/system-run.png", "places/folder-red.png", "places/folder.png",
              "places/network.png", "status/user-away.png", "devices/computer.png"})
            world.writeFile("usr/share/icons/own/48x48/" + std::string(file), "icon");

        app("viewer.desktop", "Icon=viewer-icon\nExec=viewer %f\n");
        app("qpdfview.desktop", "Icon=viewer-icon\nExec=qpdfview %f\n");
        app("browser.desktop", "Icon=browser-icon\nExec=browser %u\n");
        world.writeFile("home/.config/mimeapps.list",
                        "[Added Associations]\ntext/plain=viewer.desktop;\napplication/pdf=qpdfview.desktop;\n"
                        "x-scheme-handler/http=browser.desktop;\n");
    }
    void app(const std::string& name, const std::string& keys)
    {
        world.writeFile("usr/share/applications/" + name,
                        "[Desktop Entry]\nType=Application\nName=" + name + "\n" + keys);
    }
    std::string icon(const std::string& relative) const { return own + "/48x48/" + relative; }

    TempHome world;
    ScopedEnv dataDirs {"XDG_DATA_DIRS", (world.path("usr/share") + ":/usr/share").c_str()};
    const std::string own = world.path("usr/share/icons/own");
};

TEST_F(MimeIcons, TypesShowTheirApplicationThenTheDatabaseNames)
{
    VyxIconTheme theme("own", "", true);
    EXPECT_EQ(theme.getMimeIconNameSimple("plain"), "");
    EXPECT_EQ(theme.getMimeGenericIconNameXDG("application/pdf"), "x-office-document");
    EXPECT_EQ(theme.findMimeIconNameXDG("application/pdf", VyxIconTheme::MimeIconNameOrGeneric), "x-office-document");

    EXPECT_EQ(theme.getMimeIconPath("text/plain", 48), icon("apps/viewer-icon.png"));  // the default application's
    EXPECT_EQ(theme.getMimeIconName("text/plain"), "viewer-icon");
    // That viewer's icon is never a document's: the type's own icon instead.
    EXPECT_EQ(theme.getMimeIconPath("application/pdf", 48), icon("mimetypes/application-pdf.png"));
    // No own icon anywhere: the media type's generic one.
    EXPECT_EQ(theme.getMimeIconPath("text/x-csrc", 48), icon("mimetypes/text-x-generic.png"));
    EXPECT_EQ(theme.getMimeIconPath("image/x-no-such-type", 48), icon("mimetypes/image-x-generic.png"));
    EXPECT_EQ(theme.getMimeIconPath("chemical/x-no-such-type", 48), "");
    EXPECT_EQ(theme.getMimeIconPath("", 48), "");
    EXPECT_EQ(theme.getMimeIconPath(nullptr, 48), "");
}

TEST_F(MimeIcons, NamesAreTriedInTheContextsTheirSpellingSuggests)
{
    // Otherwise a lookup in one context also searches without it, and the
    // first context tried answers for every directory.
    ScopedEnv contextOnly("VYX_ICON_SEARCH_WITH_CONTEXT_ONLY", "1");
    VyxIconTheme theme("own", "", true);
    std::string context = "stale";
    auto expectIcon = [&](const std::string& name, const std::string& file, const char* wantContext) {
        EXPECT_EQ(theme.getIconContextAndPath(name.c_str(), 48, &context), file) << name;
        EXPECT_EQ(context, wantContext) << name;
    };
    expectIcon("edit-thing", icon("actions/edit-thing.png"), "Actions");
    // user-: Places, FileSystems, then Status.
    expectIcon("user-away", icon("status/user-away.png"), "Status");
    // A name no group claims is tried in every context, in order.
    expectIcon("computer", icon("devices/computer.png"), "Devices");
    // Found only among the system's pixmaps (debconf installs this one): kept
    // while every context is tried, then given without a context.
    if (access("/usr/share/pixmaps/debian-logo.png", F_OK) == 0)
        expectIcon("debian-logo", "/usr/share/pixmaps/debian-logo.png", "");
    expectIcon("no-such-icon-anywhere", "", "");
    expectIcon(own + "/48x48/places/folder.png", icon("places/folder.png"), "Places");
    EXPECT_EQ(theme.getIconContextAndPath(nullptr, 48, &context), "");
}

TEST_F(MimeIcons, PathsLocationsAndUrlsHereAndInAnInstalledTheme)
{
    VyxIconTheme theme("own", "", true);
    std::string context, name;
    auto expectIcon = [&](const std::string& url, const std::string& file, const char* wantContext,
                          const char* wantName) {
        EXPECT_EQ(theme.getURLIcon(url.c_str(), 48, &context, &name), file) << url;
        EXPECT_EQ(context, wantContext) << url;
        EXPECT_EQ(name, wantName) << url;
    };
    expectIcon("vyx-fm:Computer", icon("devices/computer.png"), "Devices", "computer");
    expectIcon("vyx-fm:Somewhere", icon("places/folder.png"), "Places", "folder");
    for (const std::string& url :
         {std::string("http://example.org/"), std::string("http:"), "http://" + std::string(100000, 'x')})
        expectIcon(url, icon("apps/browser-icon.png"), "", "browser-icon");  // the scheme's handler
    // No handler, failed expansions and paths that do not exist end in the default.
    for (const char* url :
         {"ftp://example.org/", "", "~no-such-user-here/x", "$VYX_NO_SUCH_VARIABLE/x", "/no/such/file.txt"})
        expectIcon(url, icon("places/network.png"), "Places", "network");

    std::string text = world.writeFile("home/notes.txt", "some words\n");
    for (const std::string& url : {text, "file://" + text, std::string("~/notes.txt")})
        expectIcon(url, icon("apps/viewer-icon.png"), "MimeTypes", "viewer-icon");

    expectIcon(world.writeFile("home/run.desktop", "[Desktop Entry]\nType=Application\nName=R\nIcon=edit-thing\n"),
               icon("actions/edit-thing.png"), "Actions", "edit-thing");
    expectIcon(world.writeFile("home/lost.desktop", "[Desktop Entry]\nType=Application\nName=L\nIcon=no-such\n"),
               icon("actions/system-run.png"), "Actions", "system-run");
    expectIcon(world.writeFile("home/bare.desktop", "[Desktop Entry]\nType=Application\nName=B\n"),
               icon("actions/system-run.png"), "Actions", "system-run");

    world.writeFile("home/red/.directory", "[Desktop Entry]\nIcon=folder-red\n");
    expectIcon(world.path("home/red"), icon("places/folder-red.png"), "Places", "folder-red");
    expectIcon(world.makeDir("home/plain"), icon("places/folder.png"), "Places", "folder");
    EXPECT_EQ(theme.getURLIconName("vyx-fm:Computer", &context), "computer");
    EXPECT_EQ(theme.getURLIconPath(nullptr, 48), icon("places/network.png"));

    // The installed themes beside ours, and real files by their detected type.
    std::vector<std::string> names = VyxIconTheme::getThemesNames();
    for (const char* expected : {"hicolor", "Adwaita", "own"})
        EXPECT_NE(std::find(names.begin(), names.end(), expected), names.end()) << expected;
    VyxIconTheme adwaita("Adwaita", "", true);
    // A C header, detected by this library, shown by the theme's generic
    // text icon: the header type has no icon of its own there.
    const std::string file = adwaita.getURLIcon("/usr/include/stdio.h", 48, &context, &name);
    EXPECT_EQ(file, "/usr/share/icons/Adwaita/48x48/mimetypes/text-x-generic.png");
    EXPECT_EQ(context, "MimeTypes");
    EXPECT_EQ(name, "text-x-generic");
    EXPECT_EQ(adwaita.getMimeIconPath("inode/directory", 16),
              "/usr/share/icons/Adwaita/16x16/mimetypes/inode-directory.png");
}

}  // namespace
