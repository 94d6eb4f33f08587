#include "tests/windows/WindowWatch.h"

#include <windows.h>

#include <string>

#include "win32/machine/Wide.h"
#include "win32/views/WindowText.h"

namespace marlok::test {

namespace {

/// Hides it too: one test that leaves a window is one failure.
BOOL CALLBACK TakeOwnTitle(HWND window, LPARAM titles) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId() && IsWindowVisible(window) != FALSE) {
        *reinterpret_cast<std::string*>(titles) += " [" + win32::FromWide(win32::WindowText(window)) + "]";
        ShowWindow(window, SW_HIDE);
    }
    return TRUE;
}

}  // namespace

void WindowWatch::OnTestEnd(const ::testing::TestInfo& test) {
    std::string titles;
    EnumWindows(TakeOwnTitle, reinterpret_cast<LPARAM>(&titles));
    EXPECT_EQ(titles, "") << test.name() << " leaves windows on the screen";
}

}  // namespace marlok::test
