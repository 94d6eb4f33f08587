#include "tests/windows/DialogUser.h"

#include <gtest/gtest.h>

#include <utility>

#include "tests/windows/Waiting.h"
#include "win32/machine/Wide.h"
#include "win32/views/WindowText.h"

namespace marlok::test {

namespace {

/// A dialog may be found while it is still being filled; once it is active, it is complete.
bool IsReady(HWND dialog) {
    GUITHREADINFO information{};
    information.cbSize = sizeof information;
    return dialog != nullptr && IsWindowVisible(dialog) != 0 &&
           GetGUIThreadInfo(GetWindowThreadProcessId(dialog, nullptr), &information) != 0 &&
           information.hwndActive == dialog;
}

}  // namespace

DialogUser::DialogUser(std::string title, Act act)
    : title_(std::move(title)), act_(std::move(act)), thread_([this] { Run(); }) {}

DialogUser::DialogUser(const std::string& title, int button)
    : DialogUser(title, [button](HWND dialog) { Press(dialog, button); }) {}

DialogUser::~DialogUser() {
    Join();
}

const std::string& DialogUser::SeenText() {
    Join();
    return seen_;
}

void DialogUser::Join() {
    if (thread_.joinable()) {
        thread_.join();
        EXPECT_TRUE(came_) << "no dialog \"" << title_ << "\" came";
    }
}

void DialogUser::Run() {
    HWND dialog = nullptr;
    if (!WaitUntil([&] { return IsReady(dialog = FindWindowW(L"#32770", win32::ToWide(title_).c_str())); })) {
        return;
    }
    came_ = true;
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        seen_ += win32::FromWide(win32::WindowText(child)) + "|";
    }
    act_(dialog);
}

void Press(HWND dialog, int button) {
    PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, button)));
}

}  // namespace marlok::test
