#include "tests/windows/WindowWatch.h"

#include <windows.h>

#include <string>

#include "win32/machine/Wide.h"
#include "win32/views/NativeControl.h"

namespace marlok::test {

namespace {

BOOL CALLBACK AppendOwnTitle(HWND window, LPARAM titles) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId() && IsWindowVisible(window) != FALSE) {
        *reinterpret_cast<std::string*>(titles) += " [" + win32::FromWide(win32::WindowText(window)) + "]";
    }
    return TRUE;
}

}  // namespace

void WindowWatch::OnTestEnd(const ::testing::TestInfo& test) {
    std::string titles;
    EnumWindows(AppendOwnTitle, reinterpret_cast<LPARAM>(&titles));
    EXPECT_EQ(titles, "") << test.name() << " leaves windows on the screen";
}

}  // namespace marlok::test
