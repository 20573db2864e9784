// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Wallpapers by name: the user's directories, the desktop's own and the XDG
// data directories, searched in turn with the image extensions.

#include "support/child_process.h"
#include "support/temp_home.h"

#include <vyxdisplay.h>

#include <gtest/gtest.h>

#include <fstream>
#include <sys/stat.h>

namespace {

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

// The desktop's own directories, in a private mount, sit between the user's
// and the system's.
TEST(Wallpaper, UserDirectoriesThenTheDesktopsThenTheSystemsExtensionsInOrder)
{
    vyxtest::TempHome world;
    const std::string mine = world.writeFile("home/.local/share/wallpapers/sea.jpg", "");
    const std::string vyx = world.writeFile("home/.vyx/wallpapers/sea.png", "");
    world.writeFile("home/.vyx/wallpapers/hills.jpg", "");
    const std::string hillsPng = world.writeFile("home/.vyx/wallpapers/hills.png", "");
    const std::string systemSea = world.writeFile("usr/share/wallpapers/sea.png", "");
    const std::string field = world.writeFile("usr/share/backgrounds/field.webp", "");
    world.writeFile("usr/share/backgrounds/sky.svg", "");
    const std::string sky = world.writeFile("usr/share/wallpapers/sky.svg", "");
    const std::string photo = world.writeFile("usr/share/backgrounds/Photo.JPG", "");
    world.makeDir("home/.local/share/wallpapers/lake.png");  // a directory is not a wallpaper
    const std::string lake = world.writeFile("usr/share/backgrounds/lake.png", "");
    world.writeFile("usr/share/wallpapers/dusk.png", "");  // loses to the desktop's images
    vyxtest::ChildOptions options;
    options.mounts = {vyxtest::Mount::tmpfs("/usr/share/vyx-wm")};
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, [&] {
        ASSERT_EQ(mkdir("/usr/share/vyx-wm/wallpapers", 0755), 0);
        ASSERT_EQ(mkdir("/usr/share/vyx-wm/images", 0755), 0);
        for (const char* file : {"/usr/share/vyx-wm/wallpapers/hills.png", "/usr/share/vyx-wm/wallpapers/noon.jpg",
                                 "/usr/share/vyx-wm/images/noon.png", "/usr/share/vyx-wm/images/dusk.png"})
            std::ofstream {file};
        EXPECT_EQ(FindWallPaperByName("sea"), mine) << "the first directory wins over a better extension";
        EXPECT_EQ(FindWallPaperByName("sea.png"), vyx) << "a given extension is taken as it is";
        EXPECT_EQ(FindWallPaperByName("hills"), hillsPng) << "within a directory .png comes before .jpg";
        EXPECT_EQ(FindWallPaperByName("noon"), "/usr/share/vyx-wm/wallpapers/noon.jpg");
        EXPECT_EQ(FindWallPaperByName("dusk"), "/usr/share/vyx-wm/images/dusk.png");
        EXPECT_EQ(FindWallPaperByName("sky"), sky) << "wallpapers before backgrounds";
        EXPECT_EQ(FindWallPaperByName("field"), field);
        EXPECT_EQ(FindWallPaperByName("Photo.JPG"), photo);
        EXPECT_EQ(FindWallPaperByName("lake"), lake);
        EXPECT_EQ(FindWallPaperByName(systemSea.c_str()), systemSea);

        CaptureStderr();
        EXPECT_EQ(FindWallPaperByName("Photo"), "") << "extensions are appended in lower case";
        EXPECT_EQ(FindWallPaperByName(world.path("usr/share/backgrounds/none.png").c_str()), "");
        EXPECT_EQ(FindWallPaperByName(""), "");
        EXPECT_EQ(FindWallPaperByName(nullptr), "");
        EXPECT_EQ(GetCapturedStderr(), "vyxcore: wallpaper 'Photo' not found\nvyxcore: wallpaper '" +
                                           world.path("usr/share/backgrounds/none.png") + "' not found\n");
    }));
}

}  // namespace
