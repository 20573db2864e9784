// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "display/xserver_p.h"

#include <X11/Xft/Xft.h>
#include <X11/Xlib.h>
#include <X11/Xresource.h>
#include <X11/extensions/Xrandr.h>
#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cstring>
#include <mutex>

namespace Vyx::detail {

namespace {

class RealXServer final : public XServer {
public:
    explicit RealXServer(Display* dpy) : m_dpy(dpy) { }
    ~RealXServer() override { freeResources(); }
    RealXServer(const RealXServer&) = delete;
    RealXServer& operator=(const RealXServer&) = delete;

    std::optional<double> xftDefaultDPI(int screen) override
    {
        FcPattern* pattern = FcPatternCreate();
        if (!pattern)
            return std::nullopt;
        XftDefaultSubstitute(m_dpy, screen, pattern);
        double dpi = 0;
        const bool found = FcPatternGetDouble(pattern, FC_DPI, 0, &dpi) == FcResultMatch;
        FcPatternDestroy(pattern);
        return found ? std::optional<double>(dpi) : std::nullopt;
    }

    void setXftDefaultDPI(int screen, double dpi) override
    {
        // The whole set of defaults is replaced, so it starts from the
        // current one and changes only the DPI.
        FcPattern* pattern = FcPatternCreate();
        if (!pattern)
            return;
        XftDefaultSubstitute(m_dpy, screen, pattern);
        FcPatternDel(pattern, FC_DPI);
        FcPatternAddDouble(pattern, FC_DPI, dpi);
        FcInitReinitialize();
        if (!XftDefaultSet(m_dpy, pattern))  // owns the pattern only when it succeeds
            FcPatternDestroy(pattern);
    }

    std::optional<std::string> resource(const char* name, const char* className) override
    {
        initializeXrm();
        XrmDatabase db = XrmGetDatabase(m_dpy);
        char* type = nullptr;
        XrmValue value {};
        if (!db || !XrmGetResource(db, name, className, &type, &value) || !value.addr)
            return std::nullopt;
        return std::string(value.addr, strnlen(value.addr, value.size));
    }

    void putResourceLine(const std::string& line) override
    {
        initializeXrm();
        XrmDatabase db = XrmGetDatabase(m_dpy);
        XrmPutLineResource(&db, line.c_str());
        XrmSetDatabase(m_dpy, db);
    }

    int screenWidth(int screen) override { return DisplayWidth(m_dpy, screen); }
    int screenWidthMM(int screen) override { return DisplayWidthMM(m_dpy, screen); }

    // Every RandR call below is guarded by the extension's presence, so that
    // a server without it gets no request (and Xlib prints nothing). The
    // core query comes first: libXrandr's own leaks its per-display record
    // when the extension is missing.
    bool hasRandr() override
    {
        if (m_hasRandr < 0) {
            int opcode = 0, eventBase = 0, errorBase = 0;
            m_hasRandr = XQueryExtension(m_dpy, RANDR_NAME, &opcode, &eventBase, &errorBase) &&
                         XRRQueryExtension(m_dpy, &eventBase, &errorBase);
        }
        return m_hasRandr;
    }

    bool randrVersion(int* major, int* minor) override
    {
        if (m_major < 0) {
            if (!hasRandr() || !XRRQueryVersion(m_dpy, &m_major, &m_minor))
                return false;
        }
        *major = m_major;
        *minor = m_minor;
        return true;
    }

    bool loadScreenResources(Window root, bool current, std::vector<unsigned long>* outputs) override
    {
        freeResources();
        if (current) {
            if (hasPrimaryRequests())  // the request came with RandR 1.3
                m_resources = XRRGetScreenResourcesCurrent(m_dpy, root);
        } else if (hasRandr()) {
            m_resources = XRRGetScreenResources(m_dpy, root);
        }
        if (!m_resources)
            return false;
        outputs->assign(m_resources->outputs, m_resources->outputs + m_resources->noutput);
        return true;
    }

    bool outputInfo(unsigned long output, RandrOutputInfo* info) override
    {
        if (!m_resources || !output)
            return false;
        XRROutputInfo* found = XRRGetOutputInfo(m_dpy, m_resources, output);
        if (!found)
            return false;
        info->name = found->name ? std::string(found->name, size_t(std::max(found->nameLen, 0))) : std::string();
        info->mmWidth = found->mm_width;
        info->mmHeight = found->mm_height;
        info->connected = found->connection == RR_Connected;
        info->crtc = found->crtc;
        info->crtcs.assign(found->crtcs, found->crtcs + found->ncrtc);
        XRRFreeOutputInfo(found);
        return true;
    }

    bool crtcInfo(unsigned long crtc, RandrCrtcInfo* info) override
    {
        // An id the server does not know (an output without a CRTC has 0)
        // would be answered with an error that ends the process.
        if (!m_resources || std::find(m_resources->crtcs, m_resources->crtcs + m_resources->ncrtc, crtc) ==
                                m_resources->crtcs + m_resources->ncrtc)
            return false;
        XRRCrtcInfo* found = XRRGetCrtcInfo(m_dpy, m_resources, crtc);
        if (!found)
            return false;
        info->x = found->x;
        info->y = found->y;
        info->width = found->width;
        info->height = found->height;
        info->rotation = found->rotation;
        XRRFreeCrtcInfo(found);
        return true;
    }

    unsigned long primaryOutput(Window root) override
    {
        return hasPrimaryRequests() ? XRRGetOutputPrimary(m_dpy, root) : 0;
    }

    void setPrimaryOutput(Window root, unsigned long output) override
    {
        if (!hasPrimaryRequests())
            return;
        XRRSetOutputPrimary(m_dpy, root, output);
        XFlush(m_dpy);
    }

private:
    static void initializeXrm()
    {
        static std::once_flag once;
        std::call_once(once, XrmInitialize);
    }

    bool hasPrimaryRequests()
    {
        int major = 0, minor = 0;
        return randrVersion(&major, &minor) && (major > 1 || (major == 1 && minor >= 3));
    }

    void freeResources()
    {
        if (m_resources)
            XRRFreeScreenResources(m_resources);
        m_resources = nullptr;
    }

    Display* m_dpy;
    XRRScreenResources* m_resources = nullptr;
    int m_hasRandr = -1;
    int m_major = -1;
    int m_minor = -1;
};

}  // namespace

std::unique_ptr<XServer> connectXServer(Display* dpy)
{
    return std::make_unique<RealXServer>(dpy);
}

}  // namespace Vyx::detail
