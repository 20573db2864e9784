// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Screen DPI: the rules against a scripted server (for sizes no Xvfb
// reports), the public functions against a real Xvfb, resource files on disk.

#include "display/xserver_p.h"
#include "support/files.h"
#include "support/run_program.h"
#include "support/temp_home.h"
#include "support/text_checks.h"
#include "support/xvfb.h"

#include <vyxdisplay.h>

#include <X11/Xlib.h>
#include <X11/extensions/Xrandr.h>

#include <gtest/gtest.h>

#include <climits>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

// fontconfig keeps part of the configuration that FcInitReinitialize reads
// until the process ends; its frames are seen only with the slow unwinder.
extern "C" const char* __asan_default_options()
{
    return "fast_unwind_on_malloc=0";
}
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:FcInitReinitialize\n";
}

namespace {

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;
using Vyx::detail::RandrCrtcInfo;
using Vyx::detail::RandrOutputInfo;
using ApplyByXrdb = Vyx::tagged_bool<ApllyByXrdb_tag>;
using InXrdb = Vyx::tagged_bool<SetInXrdb_tag>;

class ScriptedServer : public Vyx::detail::XServer {
public:
    std::optional<double> xft;
    std::optional<std::string> xrmDpi;
    std::vector<double> xftSet;
    std::vector<std::string> xrmLines;
    int widthMM = 0, major = 1, minor = 6, xftAsked = 0, primaryAsked = 0;
    bool randr = true, currentResourcesEmpty = false;
    std::vector<unsigned long> outputs;
    std::map<unsigned long, RandrOutputInfo> outputInfos;
    std::map<unsigned long, RandrCrtcInfo> crtcs;
    unsigned long primary = 0;

    // A primary output (1) on one CRTC (10).
    void monitor(unsigned long mmW, unsigned long mmH, unsigned w, unsigned h, int rotation = 1)
    {
        outputs = {1};
        outputInfos[1] = {"DP-1", mmW, mmH, true, 10, {10}};
        crtcs[10] = {0, 0, w, h, rotation};
        primary = 1;
    }

    std::optional<double> xftDefaultDPI(int) override { return ++xftAsked, xft; }
    void setXftDefaultDPI(int, double dpi) override { xftSet.push_back(dpi); }
    std::optional<std::string> resource(const char*, const char*) override { return xrmDpi; }
    void putResourceLine(const std::string& line) override { xrmLines.push_back(line); }
    int screenWidth(int) override { return 1920; }
    int screenWidthMM(int) override { return widthMM; }
    bool hasRandr() override { return randr; }
    bool randrVersion(int* a, int* b) override { return *a = major, *b = minor, randr; }
    bool loadScreenResources(Window, bool current, std::vector<unsigned long>* out) override
    {
        *out = current && currentResourcesEmpty ? std::vector<unsigned long>() : outputs;
        return randr;
    }
    bool outputInfo(unsigned long id, RandrOutputInfo* o) override
    {
        return outputInfos.count(id) && (*o = outputInfos[id], true);
    }
    bool crtcInfo(unsigned long id, RandrCrtcInfo* c) override { return crtcs.count(id) && (*c = crtcs[id], true); }
    unsigned long primaryOutput(Window) override { return ++primaryAsked, primary; }
    void setPrimaryOutput(Window, unsigned long id) override { primary = id; }
};

constexpr Window kRoot = 0x100;

TEST(FontSize, LevelsFromDpiMovedByDelta)
{
    const int cases[][3] = {{96, 0, 10},  {120, 0, 11}, {400, 3, 20}, {96, -3, 8},      {96, -1, 9},
                            {119, 0, 10}, {167, 0, 11}, {168, 0, 12}, {239, 0, 12},     {240, 0, 14},
                            {335, 0, 14}, {336, 0, 16}, {336, 1, 18}, {96, INT_MIN, 8}, {96, INT_MAX, 20}};
    for (const auto& c : cases)
        EXPECT_EQ(GetFontSizeForDPI(c[0], c[1]), c[2]) << c[0] << " " << c[1];
}

TEST(RandrDpi, PhysicalSizeSnapAndTurnedCrtcs)
{
    // CRTC width and height, millimetres across and down, rotation, DPI across and down
    const double cases[][7] = {{1920, 1080, 508, 286, 1, 96, 96},   {1920, 1920, 490, 490, 1, 96, 96},
                               {1000, 900, 254, 254, 1, 100, 90},   {1000, 2000, 400, 200, 2, 127, 127},
                               {1000, 2000, 400, 200, 8, 127, 127}, {1000, 2000, 400, 200, 18, 127, 127},
                               {1000, 2000, 400, 200, 4, 63.5, 254}};
    for (const auto& c : cases) {
        ScriptedServer server;
        server.monitor(c[2], c[3], c[0], c[1], int(c[4]));
        double x = 0, y = 0;
        ASSERT_TRUE(Vyx::detail::rrPrimaryDPI(server, kRoot, &x, &y));
        EXPECT_EQ(x, c[5]) << c[0] << " px on " << c[2] << " mm, rotation " << c[4];
        EXPECT_EQ(y, c[6]) << c[1] << " px on " << c[3] << " mm, rotation " << c[4];
    }
    ScriptedServer server;  // the log keeps the panel's size, and each DPI before snapping in brackets
    server.monitor(490, 300, 1080, 1920, 2);
    double y = 0;
    EXPECT_EQ(vyxtest::stderrOf([&] { ASSERT_TRUE(Vyx::detail::rrPrimaryDPI(server, kRoot, nullptr, &y)); }),
              "libvyxcore GetRRPrimaryDPI(): mm_width=490 mm_height=300, rotation=2 main crtc: "
              "0 0 1080 1920, dpix=0.000000(0.000000) dpiy=96.000000(99.526531)\n");

    // Failures name the output and the reason, and leave the answer as it was.
    server.monitor(0, 200, 1000, 2000);
    server.outputInfos[1].name.clear();
    double x = 7;
    CaptureStderr();
    EXPECT_FALSE(Vyx::detail::rrPrimaryDPI(server, kRoot, &x, nullptr));
    server.monitor(300, 200, 0, 768, 2);
    EXPECT_FALSE(Vyx::detail::rrPrimaryDPI(server, kRoot, &x, nullptr));
    server.outputInfos[1].crtc = 0;
    EXPECT_FALSE(Vyx::detail::rrPrimaryDPI(server, kRoot, &x, nullptr));
    EXPECT_EQ(GetCapturedStderr(),
              "libvyxcore GetRRPrimaryDPI(): unknown no size in mm (0x200), bad EDID/driver/etc ?\n"
              "libvyxcore GetRRPrimaryDPI(): DP-1 no crtc size in pixels (300x200 mm, 0x768 pix), rotation=2, "
              "disconnected?\n"
              "libvyxcore GetRRPrimaryDPI(): DP-1 cant get ctrc info\n");
    EXPECT_EQ(x, 7);
}

TEST(RandrPrimary, VersionGateAndTheFirstOutputAtTheOrigin)
{
    ScriptedServer server;
    server.outputs = {1, 2, 3, 4};
    server.outputInfos[1] = {"HDMI-1", 0, 0, false, 0, {}};
    server.outputInfos[2] = {"VGA-1", 0, 0, true, 0, {}};
    server.outputInfos[3] = {"DP-1", 600, 340, true, 11, {99, 11, 12}};
    server.outputInfos[4] = {"DP-2", 600, 340, true, 12, {12}};
    server.crtcs[11] = {1920, 0, 1920, 1080, 1};
    server.crtcs[12] = {0, 0, 1920, 1080, 1};
    server.currentResourcesEmpty = true;  // found only by probing
    server.minor = 2;
    CaptureStderr();
    EXPECT_FALSE(Vyx::detail::setRRPrimary(server, kRoot, 1, 2));
    EXPECT_FALSE(Vyx::detail::setRRPrimary(server, kRoot, 0, 0));
    EXPECT_TRUE(Vyx::detail::setRRPrimary(server, kRoot, 1, 3));
    EXPECT_EQ(server.primary, 3u);
    EXPECT_TRUE(Vyx::detail::setRRPrimary(server, kRoot, 2, 0));  // already set: silent
    server.randr = false;
    EXPECT_FALSE(Vyx::detail::setRRPrimary(server, kRoot, 0, 0));
    EXPECT_FALSE(Vyx::detail::setRRPrimary(server, kRoot, 1, 3));
    EXPECT_EQ(GetCapturedStderr(), "libvyxcore SetRRPrimary(): too old RANDR version 1.2\n"
                                   "libvyxcore SetRRPrimary(): too old RANDR version 1.2\n"
                                   "libvyxcore SetRRPrimary(): output is HDMI-1 wmm=0 hmm=0\n"
                                   "libvyxcore SetRRPrimary(): output is VGA-1 wmm=0 hmm=0\n"
                                   "  connected\n"
                                   "  can't get crtc info - skipped"
                                   "libvyxcore SetRRPrimary(): output is DP-1 wmm=600 hmm=340\n"
                                   "  connected\n"
                                   "    main crtc: 1920 0 1920 1080\n"
                                   "    can't get crtc info - skipped"
                                   "    crtc[1]: 1920 0 1920 1080\n"
                                   "    crtc[2]: 0 0 1920 1080\n"
                                   "libvyxcore SetRRPrimary(): No RANDR support!"
                                   "libvyxcore SetRRPrimary(): cant get screen resources\n");
}

// A query measures the output it would choose and leaves it as it is.
TEST(FindDpi, XftAndRandrAreAskedOnlyWhileTheDpiIsNinetySixSomething)
{
    using Vyx::detail::PrimaryChoice;
    ScriptedServer server;
    server.monitor(400, 200, 1000, 2000, 2);  // RandR says 127
    server.primary = 0;
    server.widthMM = 506;  // 1920 px: 96.38
    server.xft = 96.2;
    std::string name = "stale";
    CaptureStderr();
    EXPECT_EQ(Vyx::detail::findDPI(server, 0, kRoot, PrimaryChoice::Leave), 127.0);
    EXPECT_EQ(server.primary, 0u) << "a query never makes an output primary";
    EXPECT_EQ(Vyx::detail::findDPI(server, 0, kRoot), 127.0);
    GetCapturedStderr();
    EXPECT_EQ(server.primary, 1u);
    server.primaryAsked = 0;
    server.xft = 110;
    EXPECT_EQ(Vyx::detail::findDPI(server, 0, kRoot), 110.0);
    EXPECT_EQ(server.primaryAsked, 0);
    server.widthMM = 490;  // 99.5, not snapped here
    EXPECT_NEAR(Vyx::detail::findDPI(server, 0, kRoot), 99.5265, 1e-4);
    EXPECT_EQ(server.xftAsked, 3);

    server.primary = 0;
    server.outputInfos[1].connected = false;  // nothing qualifies: nothing measured
    EXPECT_FALSE(Vyx::detail::rrPrimaryDPI(server, kRoot, nullptr, nullptr, PrimaryChoice::Leave, &name));
    EXPECT_EQ(name, "");
}

TEST(XftDpi, TheCurrentValueWinsAndIsPublishedRounded)
{
    ScriptedServer server;
    Vyx::detail::setXftDPI(server, 0, 144, true);  // Xft has none: the one asked for
    server.xft = 100.4;
    server.xrmDpi = "100";
    Vyx::detail::setXftDPI(server, 0, 144, true);
    server.xft = 120;
    server.xrmDpi = "120.0";
    Vyx::detail::setXftDPI(server, 0, 144, true);  // already published
    Vyx::detail::setXftDPI(server, 0, 0, true);
    Vyx::detail::setXftDPI(server, 0, 90, false);
    EXPECT_EQ(server.xftSet, (std::vector<double> {144, 100.4, 120, 120}));
    EXPECT_EQ(server.xrmLines, (std::vector<std::string> {"Xft.dpi: 144", "Xft.dpi: 100"}));
}

// ---- against Xvfb: 1280x1024 pixels, 325x260 mm, one output "screen" with
// no physical size ----------------------------------------------------------

// A resource as the client dpy reads it; on a new connection, as the server
// holds it.
std::string resourceOf(Display* dpy, const char* program, const char* option)
{
    const char* value = XGetDefault(dpy, program, option);
    return value ? value : "(none)";
}

class DpiOnXvfb : public vyxtest::XvfbTest {
protected:
    Window root() { return DefaultRootWindow(display()); }
    Display* freshConnection() { return m_opened.emplace_back(XOpenDisplay(server().displayName().c_str())); }
    void TearDown() override
    {
        for (Display* dpy : m_opened)
            XCloseDisplay(dpy);
        XvfbTest::TearDown();
    }

    vyxtest::TempHome m_world;
    std::vector<Display*> m_opened;
};

TEST_F(DpiOnXvfb, FindDpiGoesPastTheScreenSizeOnlyAtNinetySix)
{
    XRRSetScreenSize(display(), root(), 1280, 1024, 338, 270);  // 96.19 across
    XSync(display(), False);
    CaptureStderr();
    EXPECT_NEAR(FindDPI(freshConnection(), 0, root()), 1024 * 25.4 / 270, 1e-9);  // Xft's, from the height
    EXPECT_HAS(GetCapturedStderr(), "GetRRPrimaryDPI(): screen no size in mm");

    ASSERT_TRUE(setXrdbParameterInFile(m_world.path("xres").c_str(), "Xft.dpi", ": ", "120.0", ApplyByXrdb(true)));
    Display* tuned = freshConnection();
    SetXftDPI(tuned, 0, 144, InXrdb(true));
    EXPECT_EQ(GetXftDPI(tuned, 0), 120.0);
    EXPECT_EQ(resourceOf(tuned, "Xft", "dpi"), "120.0");  // equal, so left as written
}

// Bad arguments get empty answers and publish nothing; Xft's own value is
// published only when asked to; the output chosen as primary has no
// physical size.
TEST_F(DpiOnXvfb, BadArgumentsXftsOwnValueAndThePrimaryOutputChosenOnce)
{
    const Window child = XCreateSimpleWindow(display(), root(), 0, 0, 1, 1, 0, 0, 0);
    for (Display* dpy : {display(), static_cast<Display*>(nullptr)}) {
        for (Window w : {Window(0), child, Window(0x7fffff)}) {
            EXPECT_FALSE(SetRRPrimary(dpy, w, 0, 0));
            EXPECT_FALSE(GetRRPrimaryDPI(dpy, w, nullptr, nullptr));
            EXPECT_EQ(FindDPI(dpy, 0, w), 0.0);
        }
        EXPECT_EQ(FindDPI(dpy, 1, root()), 0.0);  // Xvfb has screen 0 only
        EXPECT_EQ(GetXftDPI(dpy, -1), 0.0);
        SetXftDPI(dpy, 3, 120, InXrdb(true));
    }
    SetXftDPI(display(), 0, 144, InXrdb(false));
    EXPECT_EQ(resourceOf(display(), "Xft", "dpi"), "(none)");
    SetXftDPI(display(), 0, 144, InXrdb(true));
    EXPECT_EQ(resourceOf(display(), "Xft", "dpi"), "100");

    ASSERT_EQ(XRRGetOutputPrimary(display(), root()), 0u);
    CaptureStderr();
    EXPECT_TRUE(SetRRPrimary(display(), root(), 0, 0));
    EXPECT_NE(XRRGetOutputPrimary(freshConnection(), root()), 0u);
    EXPECT_TRUE(SetRRPrimary(display(), root(), 0, 0));
    EXPECT_FALSE(GetRRPrimaryDPI(display(), root(), nullptr, nullptr));
    EXPECT_EQ(GetCapturedStderr(), "libvyxcore SetRRPrimary(): output is screen wmm=0 hmm=0\n"
                                   "  connected\n"
                                   "    main crtc: 0 0 1280 1024\n"
                                   "libvyxcore GetRRPrimaryDPI(): screen no size in mm (0x0), bad EDID/driver/etc ?\n");
}

TEST(DpiWithoutRandr, ScreenSizeStillAnswers)
{
    vyxtest::XvfbServer server;
    std::string error;
    ASSERT_TRUE(server.start(&error, false)) << error;
    Display* dpy = XOpenDisplay(server.displayName().c_str());
    ASSERT_NE(dpy, nullptr);
    EXPECT_EQ(vyxtest::stderrOf([&] { EXPECT_FALSE(GetRRPrimaryDPI(dpy, DefaultRootWindow(dpy), nullptr, nullptr)); }),
              "libvyxcore SetRRPrimary(): No RANDR support!");
    EXPECT_NEAR(FindDPI(dpy, 0, DefaultRootWindow(dpy)), 1280 / (325 / 25.4), 1e-9);
    XCloseDisplay(dpy);
}

// ---- X resource files -----------------------------------------------------

TEST(XrdbFile, ReplacesAppendsAndRemovesLinesInPlaceAndCreatesMissingFiles)
{
    vyxtest::TempHome world;
    const std::string res = world.writeFile("res/Xresources", "a: 1\nXft.dpi: 90\nb: 2\n! Xft.dpi was 90\nc: 3");
    ASSERT_EQ(chmod(res.c_str(), 0640), 0);
    EXPECT_TRUE(setXrdbParameterInFile(res.c_str(), "Xft.dpi", ":\t", "120", ApplyByXrdb(false)));
    EXPECT_EQ(vyxtest::readFile(res), "a: 1\nXft.dpi:\t120\nb: 2\nXft.dpi:\t120\nc: 3\n");
    EXPECT_TRUE(setXrdbParameterInFile(res.c_str(), "Xcursor.theme", ": ", "dmz", ApplyByXrdb(false)));
    EXPECT_TRUE(setXrdbParameterInFile(res.c_str(), "Xft.dpi", ":", "", ApplyByXrdb(false)));
    EXPECT_TRUE(setXrdbParameterInFile(res.c_str(), "b:", nullptr, nullptr, ApplyByXrdb(false)));
    EXPECT_EQ(vyxtest::readFile(res), "a: 1\nc: 3\nXcursor.theme: dmz\n");
    EXPECT_EQ(vyxtest::fileMode(res), 0640u);
    EXPECT_EQ(vyxtest::listDir(world.path("res")), std::vector<std::string> {"Xresources"});

    const std::string file = world.path("new"), empty = world.path("empty"), lost = world.path("no/dir/file");
    EXPECT_TRUE(setXrdbParameterInFile(file.c_str(), "Xft.dpi", ": ", "96", ApplyByXrdb(false)));
    EXPECT_TRUE(setXrdbParameterInFile(empty.c_str(), "Xft.dpi", ": ", "", ApplyByXrdb(false)));
    EXPECT_TRUE(setXrdbParameterInFile(lost.c_str(), "Xft.dpi", ": ", "96", ApplyByXrdb(false)));
    EXPECT_EQ(vyxtest::listDir(world.root()),
              (std::vector<std::string> {"empty", "etc", "home", "new", "res", "run", "tmp", "usr"}));
    EXPECT_EQ(vyxtest::readFile(empty), "");
    for (const char* bad : {static_cast<const char*>(nullptr), ""}) {
        EXPECT_FALSE(setXrdbParameterInFile(bad, "Xft.dpi", ": ", "1", ApplyByXrdb(false)));
        EXPECT_FALSE(setXrdbParameterInFile(file.c_str(), bad, ": ", "1", ApplyByXrdb(false)));
    }
    EXPECT_EQ(vyxtest::readFile(file), "Xft.dpi: 96\n");
}

TEST_F(DpiOnXvfb, XrdbMergesFilesWhoseNamesNoShellWouldTouch)
{
    const std::string plain = m_world.path("home/.Xresources-1.d,x");
    EXPECT_TRUE(setXrdbParameterInFile(plain.c_str(), "Vyx.greeting", ": ", "hello world", ApplyByXrdb(true)));
    EXPECT_EQ(resourceOf(freshConnection(), "Vyx", "greeting"), "hello world");

    // xrdb would hand this name to a shell: split at the blank, run "touch".
    ASSERT_EQ(chdir(m_world.root().c_str()), 0);
    const std::string odd = m_world.makeDir("a b;touch pwned;") + "/Xres";
    CaptureStderr();
    EXPECT_TRUE(setXrdbParameterInFile(odd.c_str(), "Vyx.farewell", ": ", "bye", ApplyByXrdb(true)));
    EXPECT_EQ(GetCapturedStderr(), "vyxcore: " + odd + " not merged by xrdb: its name would reach a shell\n");
    EXPECT_EQ(vyxtest::readFile(odd), "Vyx.farewell: bye\n");
    EXPECT_NE(access("pwned", F_OK), 0);
    ASSERT_EQ(chdir("/"), 0);
}

#ifdef VYXCORE_TOOL
TEST_F(DpiOnXvfb, ToolReportsEachSource)
{
    const vyxtest::ProgramRun run = vyxtest::runTool({"dpi", "--json"});
    EXPECT_EQ(run.status, 0);
    EXPECT_HAS(run.out, "\"screen_dpi_x\": 100.04", "\"xft_dpi\": 100.04", "\"randr_dpi_x\": null",
               "\"randr_primary\": null", "\"randr_output\": \"screen\"", "\"dpi\": 100.04", "\"font_size\": 10",
               "\"icon_size\": 32", "\"frame_border_size\": 0");
    // A report: the output it measured is named, not made primary.
    EXPECT_EQ(XRRGetOutputPrimary(freshConnection(), root()), 0u);
    EXPECT_HAS(vyxtest::runTool({"dpi"}).out, "(none; screen would be chosen)");
    vyxtest::ScopedEnv noDisplay("DISPLAY", nullptr);
    EXPECT_EQ(vyxtest::runTool({"dpi"}).status, 1);
}
#endif

}  // namespace
