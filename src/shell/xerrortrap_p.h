#ifndef VYXCORE_XERRORTRAP_P_H
#define VYXCORE_XERRORTRAP_P_H

// Keeps X errors away from Xlib's default handler, which ends the process.
// Windows of other clients can vanish between listing them and reading
// their properties; such a read must simply fail.

#include <X11/Xlib.h>

#include <mutex>

namespace Vyx::detail {

// While it lives, X errors only make the failing request fail. The handler is
// process-wide, so traps on any display are serialised.
class XErrorTrap {
public:
    explicit XErrorTrap(Display* display);
    ~XErrorTrap();
    XErrorTrap(const XErrorTrap&) = delete;
    XErrorTrap& operator=(const XErrorTrap&) = delete;

private:
    std::unique_lock<std::mutex> m_lock;
    Display* m_display;
    XErrorHandler m_previous;
};

}  // namespace Vyx::detail

#endif
