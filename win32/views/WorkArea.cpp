#include "win32/views/WorkArea.h"

#include <algorithm>

namespace marlok::win32 {

RECT MovedOntoWorkArea(const RECT& place) {
    MONITORINFO screen{};
    screen.cbSize = sizeof screen;
    if (GetMonitorInfoW(MonitorFromRect(&place, MONITOR_DEFAULTTONEAREST), &screen) == 0) {
        return place;  // the screen has just been taken away; the system finds a place for its windows itself
    }
    const RECT& work = screen.rcWork;
    const LONG width = place.right - place.left;
    const LONG height = place.bottom - place.top;
    const LONG left = std::max(work.left, std::min(place.left, work.right - width));
    const LONG top = std::max(work.top, std::min(place.top, work.bottom - height));
    return {left, top, left + width, top + height};
}

SIZE WorkSize(const RECT& place) {
    MONITORINFO screen{};
    screen.cbSize = sizeof screen;
    if (GetMonitorInfoW(MonitorFromRect(&place, MONITOR_DEFAULTTONEAREST), &screen) == 0) {
        return {GetSystemMetrics(SM_CXMAXTRACK), GetSystemMetrics(SM_CYMAXTRACK)};  // the screen was just taken away
    }
    return {screen.rcWork.right - screen.rcWork.left, screen.rcWork.bottom - screen.rcWork.top};
}

}  // namespace marlok::win32
