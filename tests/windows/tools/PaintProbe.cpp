#include "tests/windows/tools/PaintProbe.h"

#include <algorithm>
#include <vector>

#include "tests/windows/tools/Shown.h"

namespace marlok::test {

namespace {

constexpr ULONGLONG pause = 50;  // milliseconds between two probes

bool HasUpdateRegion(HWND window) {
    return GetUpdateRect(window, nullptr, FALSE) != FALSE;
}

bool AllPainted(HWND window) {
    const std::vector<HWND> children = VisibleChildren(window);
    return !HasUpdateRegion(window) && std::none_of(children.begin(), children.end(), HasUpdateRegion);
}

}  // namespace

PaintTimes ProbePainting(HWND window, ULONGLONG milliseconds) {
    PaintTimes times;
    const ULONGLONG end = GetTickCount64() + milliseconds;
    while (GetTickCount64() < end) {
        const ULONGLONG began = GetTickCount64();
        RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN);
        bool painted = false;
        while (!painted && GetTickCount64() < end) {
            Sleep(1);
            painted = AllPainted(window);
        }
        if (IsWindowVisible(window) == FALSE) {
            times.gone = true;
            return times;
        }
        times.painted += painted ? 1 : 0;
        times.longest = std::max(times.longest, GetTickCount64() - began);
        const ULONGLONG asked = GetTickCount64();
        // One that does not answer in time has taken at least that long.
        SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, static_cast<UINT>(milliseconds), nullptr);
        times.longestReply = std::max(times.longestReply, GetTickCount64() - asked);
        const ULONGLONG spent = GetTickCount64() - began;
        Sleep(static_cast<DWORD>(spent < pause ? pause - spent : 0));
    }
    return times;
}

}  // namespace marlok::test
