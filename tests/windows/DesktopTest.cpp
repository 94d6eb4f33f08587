#include <gtest/gtest.h>

#include <windows.h>

#include <thread>

#include "platform/win32/NativeControl.h"
#include "platform/win32/Wide.h"
#include "platform/win32/Win32Machine.h"
#include "tests/windows/Waiting.h"

namespace marlok::test {
namespace {

/// A user on a thread of his own, who waits for the message box of that title, looks at it and presses a button.
class Answer {
 public:
    Answer(std::string title, int button) : title_(std::move(title)), thread_([this, button] { Run(button); }) {}
    Answer(const Answer&) = delete;
    Answer& operator=(const Answer&) = delete;
    ~Answer() { Join(); }

    /// The texts in the box, once it is answered.
    const std::string& SeenText() {
        Join();
        return seen_;
    }

 private:
    void Join() {
        if (thread_.joinable()) {
            thread_.join();
        }
    }

    void Run(int button) {
        HWND box = nullptr;
        if (!WaitUntil([&] { return (box = FindWindowW(L"#32770", win32::ToWide(title_).c_str())) != nullptr; })) {
            return;
        }
        // The box may be found while it is still being filled.
        static_cast<void>(WaitUntil([&] { return GetDlgItem(box, button) != nullptr && IsWindowVisible(box) != 0; }));
        EnumChildWindows(box, &Look, reinterpret_cast<LPARAM>(this));
        PostMessageW(box, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                     reinterpret_cast<LPARAM>(GetDlgItem(box, button)));
    }

    static BOOL CALLBACK Look(HWND child, LPARAM data) {
        reinterpret_cast<Answer*>(data)->seen_ += win32::FromWide(win32::WindowText(child)) + "|";
        return TRUE;
    }

    std::string title_;
    std::string seen_;
    std::thread thread_;
};

class DesktopTest : public ::testing::Test {
 protected:
    win32::Win32Machine real;
    Desktop& desktop = real.machine().desktop;
    const std::string title = "Marlok Info..... " + std::to_string(GetCurrentProcessId()) + " " +
                              ::testing::UnitTest::GetInstance()->current_test_info()->name();
};

TEST_F(DesktopTest, AMessageShowsItsTextAndReturnsTheButton) {
    Answer yes(title, button::yes);
    EXPECT_EQ(desktop.ShowMessage("Délete 日本 ?", messagestyle::yesNo | messagestyle::question, title), button::yes);
    EXPECT_NE(yes.SeenText().find("Délete 日本 ?"), std::string::npos) << yes.SeenText();
}

TEST_F(DesktopTest, EveryButtonHasItsNumber) {
    struct Case {
        std::uint32_t style;
        int button;
    };
    for (const Case& one :
         {Case{messagestyle::yesNo, button::no}, Case{messagestyle::okCancel, button::cancel},
          Case{messagestyle::abortRetryIgnore | messagestyle::information, button::retry},
          Case{messagestyle::abortRetryIgnore, button::abort}, Case{messagestyle::abortRetryIgnore, button::ignore}}) {
        const Answer answer(title, one.button);
        EXPECT_EQ(desktop.ShowMessage("Which?", one.style, title), one.button);
    }
}

TEST_F(DesktopTest, WaitingEndsWithTheTime) {
    const std::uint64_t start = real.machine().clock.TickCount();
    EXPECT_TRUE(WaitUntil([&] { return real.machine().clock.TickCount() - start >= 100; }, std::chrono::seconds(10),
                          [&] { desktop.WaitForInput(30); }));
}

TEST_F(DesktopTest, TheScreenIsMeasuredInTwips) {
    const int dpi = static_cast<int>(GetDpiForSystem());
    EXPECT_EQ(desktop.ScreenWidth(), GetSystemMetrics(SM_CXSCREEN) * 1440 / dpi);
    EXPECT_EQ(desktop.ScreenHeight(), GetSystemMetrics(SM_CYSCREEN) * 1440 / dpi);
}

TEST_F(DesktopTest, TheHourglassIsShownAndTakenBack) {
    desktop.ShowHourglass(true);
    EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_WAIT));
    desktop.ShowHourglass(false);
    EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_ARROW));
}

}  // namespace
}  // namespace marlok::test
