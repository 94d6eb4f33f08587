#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <thread>
#include <vector>

#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/Windows.h"
#include "tests/windows/DialogUser.h"
#include "tests/windows/Waiting.h"
#include "win32/Win32Machine.h"
#include "win32/machine/Wide.h"

namespace marlok::test {
namespace {

/// What the system asks before a session ends, asked of the program's windows here.
class SessionTest : public ::testing::Test {
 protected:
    class OneForm : public forms::Form {
     public:
        explicit OneForm(forms::Windows& windows, const std::string& caption) : Form(windows, "One", caption) {
            Place(600, 600, 4000, 2000);
            Command1.MoveTo(150, 150, 2000, 400);
        }
        forms::CommandButton Command1{*this, "Command1", "Press"};
    };

    HWND Show() {
        form.Show();
        desktop.WaitForInput(0);
        return FindWindowW(L"MarlokWindow", win32::ToWide(caption).c_str());
    }

    /// The program's windows at the top, shown or not.
    static std::vector<HWND> OwnWindows() {
        std::vector<HWND> windows;
        const auto add = [](HWND window, LPARAM list) -> BOOL {
            wchar_t name[32] = {};
            GetClassNameW(window, name, 32);
            if (std::wstring(name).starts_with(L"Marlok")) {
                reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
            }
            return TRUE;
        };
        EnumThreadWindows(GetCurrentThreadId(), add, reinterpret_cast<LPARAM>(&windows));
        return windows;
    }

    static bool MayEnd(HWND window) { return SendMessageW(window, WM_QUERYENDSESSION, 0, 0) != 0; }

    win32::Win32Machine real;
    Desktop& desktop = real.machine().desktop;
    forms::Windows windows{real.machine().desktop, real.machine().clock, &real.views()};
    std::string caption = "Session " + std::to_string(GetCurrentProcessId()) + " " +
                          ::testing::UnitTest::GetInstance()->current_test_info()->name();
    OneForm form{windows, caption};
};

TEST_F(SessionTest, AWindowLetsTheSessionEndAndTells) {
    HWND window = Show();
    ASSERT_NE(window, nullptr);
    EXPECT_FALSE(desktop.SessionEnding());
    EXPECT_TRUE(MayEnd(window));
    EXPECT_TRUE(desktop.SessionEnding());
    SendMessageW(window, WM_ENDSESSION, FALSE, 0);
    EXPECT_FALSE(desktop.SessionEnding()) << "it was called off";
    SendMessageW(window, WM_ENDSESSION, TRUE, 0);
    EXPECT_TRUE(desktop.SessionEnding());
}

TEST_F(SessionTest, AWindowHoldsTheEndUpWhileAsked) {
    HWND window = Show();
    desktop.BlockShutdown("Files are being copied.");
    EXPECT_FALSE(MayEnd(window));
    EXPECT_TRUE(desktop.SessionEnding());
    desktop.AllowShutdown();
    EXPECT_TRUE(MayEnd(window));
}

TEST_F(SessionTest, ARunWithoutWindowsHasAHiddenOneForIt) {
    EXPECT_TRUE(OwnWindows().empty());
    desktop.BlockShutdown("Files are being copied.");
    const std::vector<HWND> hidden = OwnWindows();
    ASSERT_EQ(hidden.size(), 1U);
    EXPECT_FALSE(IsWindowVisible(hidden[0]));
    EXPECT_EQ(GetParent(hidden[0]), nullptr);
    EXPECT_FALSE(MayEnd(hidden[0]));
    EXPECT_TRUE(desktop.SessionEnding());
    SendMessageW(hidden[0], WM_CLOSE, 0, 0);
    EXPECT_TRUE(IsWindow(hidden[0]));
    desktop.AllowShutdown();
    EXPECT_TRUE(OwnWindows().empty());
}

TEST_F(SessionTest, TheQuestionIsAnsweredWhileTheProgramMerelyPaints) {
    HWND window = Show();
    desktop.BlockShutdown("Files are being copied.");
    DWORD_PTR answer = TRUE;
    bool answered = false;
    std::thread system(
        [&] { answered = SendMessageTimeoutW(window, WM_QUERYENDSESSION, 0, 0, SMTO_NORMAL, 10000, &answer) != 0; });
    EXPECT_TRUE(WaitUntil([this] { return desktop.SessionEnding(); }, std::chrono::seconds(10),
                          [this] { desktop.PaintPending(); }));
    system.join();
    EXPECT_TRUE(answered);
    EXPECT_EQ(answer, 0U);
    desktop.AllowShutdown();
}

TEST_F(SessionTest, DiscardedInputReachesNoHandlerHoweverFarItCame) {
    HWND window = Show();
    int pressed = 0;
    form.Command1.Click = [&pressed] { ++pressed; };
    HWND button = FindWindowExW(window, nullptr, L"Button", nullptr);
    ASSERT_NE(button, nullptr);
    SendMessageW(button, BM_CLICK, 0, 0);  // taken by the window, waiting for its handler
    desktop.DiscardInput();
    desktop.WaitForInput(0);
    EXPECT_EQ(pressed, 0);
    SendMessageW(button, BM_CLICK, 0, 0);
    EXPECT_TRUE(
        WaitUntil([&] { return pressed == 1; }, std::chrono::seconds(10), [this] { desktop.WaitForInput(10); }));
}

TEST_F(SessionTest, ABoxClosesByItself) {
    const std::uint64_t before = real.machine().clock.TickCount();
    EXPECT_EQ(desktop.ShowMessageFor("Nobody is here.", messagestyle::yesNo, caption, 300), button::yes);
    const std::uint64_t shown = real.machine().clock.TickCount() - before;
    EXPECT_GE(shown, 250U);
    EXPECT_LT(shown, 20000U);
    EXPECT_EQ(desktop.ShowMessageFor("Nor now.", messagestyle::ok, caption, 1), button::ok);
}

TEST_F(SessionTest, ABoxThatIsAnsweredInTimeReturnsTheAnswer) {
    DialogUser no(caption, button::no);
    EXPECT_EQ(desktop.ShowMessageFor("Empty it?", messagestyle::yesNo, caption, 60000), button::no);
    EXPECT_NE(no.SeenText().find("Empty it?"), std::string::npos);
}

}  // namespace
}  // namespace marlok::test
