// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_XSERVER_P_H
#define VYXCORE_XSERVER_P_H

// The few questions the DPI code asks the X server (Xft and fontconfig
// defaults, the resource database, the core screen size, RandR), behind one
// small interface so that the decisions built on the answers can be run
// against a scripted server as well as a real one.

#include <memory>
#include <optional>
#include <string>
#include <vector>

typedef struct _XDisplay Display;
typedef unsigned long Window;

namespace Vyx::detail {

struct RandrOutputInfo {
    std::string name;  // empty when the output has none
    unsigned long mmWidth = 0;
    unsigned long mmHeight = 0;
    bool connected = false;
    unsigned long crtc = 0;  // current CRTC, 0 when none
    std::vector<unsigned long> crtcs;  // the CRTCs the output can use
};

struct RandrCrtcInfo {
    int x = 0;
    int y = 0;
    unsigned width = 0;
    unsigned height = 0;
    int rotation = 1;  // RandR rotation bits: 1, 2 (90), 4 (180), 8 (270)
};

class XServer {
public:
    virtual ~XServer() = default;

    // Xft's default "dpi" for screen (what an empty pattern gets from the
    // display's Xft defaults), or nothing.
    virtual std::optional<double> xftDefaultDPI(int screen) = 0;
    // Makes dpi the "dpi" of the display's Xft defaults and has fontconfig
    // reload its configuration.
    virtual void setXftDefaultDPI(int screen, double dpi) = 0;

    // A resource of the display's resource database, or nothing.
    virtual std::optional<std::string> resource(const char* name, const char* className) = 0;
    // Adds "name: value" to the display's resource database.
    virtual void putResourceLine(const std::string& line) = 0;

    // The core protocol's size of screen in pixels and millimetres.
    virtual int screenWidth(int screen) = 0;
    virtual int screenWidthMM(int screen) = 0;

    virtual bool hasRandr() = 0;
    virtual bool randrVersion(int* major, int* minor) = 0;
    // Fetches the screen resources of root (the server's current ones, or
    // with current false after probing the hardware) for the calls below;
    // false when there are none.
    virtual bool loadScreenResources(Window root, bool current, std::vector<unsigned long>* outputs) = 0;
    virtual bool outputInfo(unsigned long output, RandrOutputInfo* info) = 0;
    virtual bool crtcInfo(unsigned long crtc, RandrCrtcInfo* info) = 0;
    virtual unsigned long primaryOutput(Window root) = 0;  // 0 when none
    virtual void setPrimaryOutput(Window root, unsigned long output) = 0;
};

// The real server behind dpy (not null).
std::unique_ptr<XServer> connectXServer(Display* dpy);

// The DPI rules over any server; the public functions run them on the real
// one after checking their arguments.
double xftDPI(XServer& server, int screen);
void setXftDPI(XServer& server, int screen, double dpi, bool setInXrdb);
bool setRRPrimary(XServer& server, Window root, int major, int minor);
// The output setRRPrimary would leave primary in *chosen (the current
// primary when there is one, then *alreadyPrimary is true), 0 when none
// qualifies; the server is not changed. False as setRRPrimary.
bool chooseRRPrimary(XServer& server, Window root, int major, int minor, unsigned long* chosen,
                     bool* alreadyPrimary = nullptr);

// Whether a DPI query without a primary output makes one primary (as the
// long-standing functions do) or only measures the one it would choose.
enum class PrimaryChoice { Set, Leave };
bool rrPrimaryDPI(XServer& server, Window root, double* dpix, double* dpiy, PrimaryChoice choice = PrimaryChoice::Set,
                  std::string* outputName = nullptr);
double findDPI(XServer& server, int screen, Window root, PrimaryChoice choice = PrimaryChoice::Set);

}  // namespace Vyx::detail

#endif
