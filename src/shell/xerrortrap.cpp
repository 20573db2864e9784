#include "shell/xerrortrap_p.h"

namespace {

std::mutex g_trapMutex;

// The failed request reports the error to its caller; nothing else to do.
int ignoreError(Display*, XErrorEvent*)
{
    return 0;
}

}  // namespace

namespace Vyx::detail {

XErrorTrap::XErrorTrap(Display* display) : m_lock(g_trapMutex), m_display(display)
{
    // Errors of earlier requests belong to whoever made them.
    XSync(m_display, False);
    m_previous = XSetErrorHandler(ignoreError);
}

XErrorTrap::~XErrorTrap()
{
    XSync(m_display, False);
    XSetErrorHandler(m_previous);
}

}  // namespace Vyx::detail
