#include <gtest/gtest.h>

#include <windows.h>

#include "tests/windows/DialogUser.h"
#include "tests/windows/Waiting.h"
#include "win32/Win32Machine.h"

namespace marlok::test {
namespace {

class DesktopTest : public ::testing::Test {
 protected:
    win32::Win32Machine real;
    Desktop& desktop = real.machine().desktop;
    const std::string title = "Marlok Info..... " + std::to_string(GetCurrentProcessId()) + " " +
                              ::testing::UnitTest::GetInstance()->current_test_info()->name();
};

TEST_F(DesktopTest, AMessageShowsItsTextAndReturnsTheButton) {
    DialogUser yes(title, button::yes);
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
        const DialogUser answer(title, one.button);
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
