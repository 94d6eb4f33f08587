#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/TreeView.h"
#include "forms/Windows.h"
#include "tests/windows/Waiting.h"
#include "win32/Win32Machine.h"
#include "win32/machine/Wide.h"
#include "win32/views/NativeControls.h"
#include "win32/views/Twips.h"
#include "win32/views/WindowText.h"

namespace marlok::test {
namespace {

class SampleForm : public forms::Form {
 public:
    SampleForm(forms::Windows& windows, const std::string& caption) : Form(windows, "Sample", caption) {
        Place(1500, 1500, 6000, 6000);
        Put(Label1, 0, 300);
        Put(Command1, 300, 600);
        Put(Command2, 900, 600);
        Put(Text1, 1500, 400);
        Put(List1, 1900, 1500);
        Put(List2, 3400, 1500);
        Put(ProgressBar1, 4900, 300);
        List2.MultiSelect = true;
        HiddenList.Visible = false;
    }

    static void Put(forms::Control& control, int top, int height) {
        control.Left = 0;
        control.Top = top;
        control.Width = 3000;
        control.Height = height;
    }

    void Form_Resize() override { ++resized; }
    void Form_Unload() override { ++unloaded; }

    forms::Label Label1{*this, "Label1", "C:\\Mine & Yours"};
    forms::CommandButton Command1{*this, "Command1", "Press"};
    forms::CommandButton Command2{*this, "Command2", "Other"};
    forms::TextBox Text1{*this, "Text1"};
    forms::ListBox List1{*this, "List1"};
    forms::ListBox List2{*this, "List2"};
    forms::ListBox HiddenList{*this, "HiddenList"};
    forms::TreeView Tree1{*this, "Tree1"};
    forms::ProgressBar ProgressBar1{*this, "ProgressBar1"};
    forms::Timer Timer1{*this, "Timer1", 1000};
    int resized = 0;
    inline static int unloaded = 0;
};

class NativeViewTest : public ::testing::Test {
 protected:
    void SetUp() override {
        form.Show();
        window = FindWindowW(L"MarlokWindow", win32::ToWide(caption).c_str());
        ASSERT_NE(window, nullptr);
        form.resized = 0;
    }

    /// The window of a control: the first child of that class, or of that class and text.
    HWND Child(const wchar_t* className, const wchar_t* text = nullptr) const {
        return FindWindowExW(window, nullptr, className, text);
    }

    HWND List(bool multi) const {
        HWND list = Child(WC_LISTBOXW);
        const auto isMulti = [](HWND box) { return (GetWindowLongPtrW(box, GWL_STYLE) & LBS_EXTENDEDSEL) != 0; };
        return isMulti(list) == multi ? list : FindWindowExW(window, list, WC_LISTBOXW, nullptr);
    }

    bool Until(const std::function<bool()>& condition) {
        return WaitUntil(condition, std::chrono::seconds(10), [this] { real.machine().desktop.WaitForInput(20); });
    }

    /// Delivers everything that waits now.
    void Settle() { real.machine().desktop.WaitForInput(0); }

    static void Click(HWND list, int line) {
        RECT place{};
        SendMessageW(list, LB_GETITEMRECT, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(&place));
        const LPARAM point = MAKELPARAM(place.left + 5, (place.top + place.bottom) / 2);
        PostMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, point);
        PostMessageW(list, WM_LBUTTONUP, 0, point);
    }

    static std::string Text(HWND control) { return win32::FromWide(win32::WindowText(control)); }

    win32::Win32Machine real;
    const std::string caption = "Sample " + std::to_string(GetCurrentProcessId()) + " " +
                                ::testing::UnitTest::GetInstance()->current_test_info()->name();
    forms::Windows windows{real.machine().desktop, real.machine().clock, &real.views()};
    SampleForm& form = windows.Load<SampleForm>(caption);
    HWND window = nullptr;
};

TEST_F(NativeViewTest, ControlsAreStandardControlsWithTheirText) {
    EXPECT_TRUE(IsWindowVisible(window));
    EXPECT_EQ(Text(Child(WC_STATICW)), "C:\\Mine & Yours");
    EXPECT_NE(GetWindowLongPtrW(Child(WC_STATICW), GWL_STYLE) & SS_NOPREFIX, 0);
    EXPECT_NE(Child(WC_BUTTONW, L"Press"), nullptr);
    EXPECT_NE(Child(WC_EDITW), nullptr);
    EXPECT_NE(Child(PROGRESS_CLASSW), nullptr);
    EXPECT_NE(Child(WC_TREEVIEWW), nullptr);
    EXPECT_NE(List(false), List(true));
    EXPECT_EQ(
        FindWindowExW(window, FindWindowExW(window, Child(WC_LISTBOXW), WC_LISTBOXW, nullptr), WC_LISTBOXW, nullptr),
        nullptr)
        << "a hidden list has no window";
}

TEST_F(NativeViewTest, TwipsBecomePixelsOfTheWindowsResolution) {
    const UINT dpi = GetDpiForWindow(window);
    RECT inner{};
    GetClientRect(window, &inner);
    EXPECT_EQ(inner.right, win32::ToPixels(6000, dpi));
    EXPECT_EQ(inner.bottom, win32::ToPixels(6000, dpi));
    RECT place{};
    GetWindowRect(Child(WC_BUTTONW, L"Other"), &place);
    MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
    EXPECT_EQ(place.top, win32::ToPixels(900, dpi));
    EXPECT_EQ(place.bottom, win32::ToPixels(1500, dpi));
    EXPECT_EQ(place.right, win32::ToPixels(3000, dpi));
}

TEST_F(NativeViewTest, PressingTheButtonRunsItsHandlerOnce) {
    int pressed = 0;
    form.Command1.Click = [&] { ++pressed; };
    PostMessageW(Child(WC_BUTTONW, L"Press"), BM_CLICK, 0, 0);
    EXPECT_TRUE(Until([&] { return pressed > 0; }));
    Settle();
    EXPECT_EQ(pressed, 1);
}

TEST_F(NativeViewTest, NoHandlerRunsWhileWindowsMerelyPaint) {
    int pressed = 0;
    form.Command1.Click = [&] { ++pressed; };
    SendMessageW(Child(WC_BUTTONW, L"Press"), BM_CLICK, 0, 0);
    PostMessageW(Child(WC_BUTTONW, L"Press"), BM_CLICK, 0, 0);
    InvalidateRect(window, nullptr, TRUE);
    real.machine().desktop.PaintPending();
    EXPECT_EQ(pressed, 0);
    EXPECT_EQ(GetUpdateRect(window, nullptr, FALSE), FALSE) << "it was painted";
    EXPECT_TRUE(Until([&] { return pressed == 2; }));
}

TEST_F(NativeViewTest, AHandlerMayUnloadItsOwnWindow) {
    const int before = SampleForm::unloaded;
    form.Command1.Click = [&] { form.Unload(); };
    PostMessageW(Child(WC_BUTTONW, L"Press"), BM_CLICK, 0, 0);
    PostMessageW(Child(WC_BUTTONW, L"Press"), BM_CLICK, 0, 0);
    windows.Run();
    EXPECT_EQ(SampleForm::unloaded, before + 1);
    EXPECT_FALSE(IsWindow(window));
}

TEST_F(NativeViewTest, ClosingTheWindowUnloadsTheForm) {
    PostMessageW(window, WM_CLOSE, 0, 0);
    windows.Run();
    EXPECT_FALSE(windows.AnyLoaded());
    EXPECT_FALSE(IsWindow(window));
}

TEST_F(NativeViewTest, WhatAHandlerThrowsLeavesTheLoop) {
    form.Command1.Click = [] { throw std::runtime_error("from the handler"); };
    PostMessageW(Child(WC_BUTTONW, L"Press"), BM_CLICK, 0, 0);
    EXPECT_THROW(windows.Run(), std::runtime_error);
}

TEST_F(NativeViewTest, StateChangesAreMirrored) {
    HWND button = Child(WC_BUTTONW, L"Press");
    form.Command1.Caption = "Délete 日本";
    EXPECT_EQ(Text(button), "Délete 日本");
    form.Command1.Enabled = false;
    EXPECT_FALSE(IsWindowEnabled(button));
    form.Command1.Visible = false;
    EXPECT_FALSE(IsWindowVisible(button));
    form.Command1.Visible = true;
    EXPECT_TRUE(IsWindowVisible(button));
    form.SetCaption("New " + caption);
    EXPECT_EQ(Text(window), "New " + caption);
    form.Hide();
    EXPECT_FALSE(IsWindowVisible(window));
}

TEST_F(NativeViewTest, AHiddenControlGetsItsWindowWhenItIsFirstShown) {
    form.HiddenList.AddItem("one");
    form.HiddenList.Visible = true;
    HWND third = Child(WC_LISTBOXW);
    third = FindWindowExW(window, third, WC_LISTBOXW, nullptr);
    third = FindWindowExW(window, third, WC_LISTBOXW, nullptr);
    ASSERT_NE(third, nullptr) << "behind the other two: the order of the form";
    EXPECT_EQ(SendMessageW(third, LB_GETCOUNT, 0, 0), 1);
}

TEST_F(NativeViewTest, TypedTextReachesTheModel) {
    HWND edit = Child(WC_EDITW);
    form.Text1.Text = "abc";
    EXPECT_EQ(Text(edit), "abc");
    SetFocus(edit);
    SendMessageW(edit, EM_SETSEL, 3, 3);
    PostMessageW(edit, WM_CHAR, L'ä', 0);
    EXPECT_TRUE(Until([&] { return form.Text1.Text.Get() == "abcä"; })) << form.Text1.Text.Get();
}

TEST_F(NativeViewTest, EnterPressesTheFocusedButtonAndTabMovesOn) {
    int first = 0;
    int second = 0;
    form.Command1.Click = [&] { ++first; };
    form.Command2.Click = [&] { ++second; };
    SetFocus(Child(WC_BUTTONW, L"Press"));
    if (GetActiveWindow() != window) {
        SetActiveWindow(window);
    }
    PostMessageW(Child(WC_BUTTONW, L"Press"), WM_KEYDOWN, VK_RETURN, 0);
    EXPECT_TRUE(Until([&] { return first == 1; }));
    PostMessageW(Child(WC_BUTTONW, L"Press"), WM_KEYDOWN, VK_TAB, 0);
    EXPECT_TRUE(Until([&] { return GetFocus() == Child(WC_BUTTONW, L"Other"); }));
    PostMessageW(Child(WC_BUTTONW, L"Other"), WM_KEYDOWN, VK_RETURN, 0);
    EXPECT_TRUE(Until([&] { return second == 1; }));
    EXPECT_EQ(first, 1);
}

TEST_F(NativeViewTest, EscapeClosesNothing) {
    SetFocus(Child(WC_BUTTONW, L"Press"));
    PostMessageW(Child(WC_BUTTONW, L"Press"), WM_KEYDOWN, VK_ESCAPE, 0);
    Settle();
    EXPECT_TRUE(windows.AnyLoaded());
    EXPECT_TRUE(IsWindowVisible(window));
}

TEST_F(NativeViewTest, AControlThatGoesPassesTheKeyboardOn) {
    SetActiveWindow(window);
    SetFocus(Child(WC_BUTTONW, L"Press"));
    form.Command1.Enabled = false;
    EXPECT_EQ(GetFocus(), Child(WC_BUTTONW, L"Other"));
}

TEST_F(NativeViewTest, SizingTheWindowReachesTheFormOnce) {
    const UINT dpi = GetDpiForWindow(window);
    RECT outer{};
    GetWindowRect(window, &outer);
    SetWindowPos(window, nullptr, 0, 0, outer.right - outer.left + 96, outer.bottom - outer.top + 48,
                 SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_EQ(form.Width(), 6000 + win32::ToTwips(96, dpi));
    EXPECT_EQ(form.Height(), 6000 + win32::ToTwips(48, dpi));
    EXPECT_EQ(form.resized, 1);
    EXPECT_EQ(form.Left(), 1500);
    form.Place(1500, 1500, 6000, 5000);
    EXPECT_EQ(form.resized, 1) << "placing in code is no act of the user";
    RECT inner{};
    GetClientRect(window, &inner);
    EXPECT_EQ(inner.bottom, win32::ToPixels(5000, dpi));
}

TEST_F(NativeViewTest, AnotherResolutionKeepsTheTwips) {
    const UINT dpi = GetDpiForWindow(window);
    RECT suggested{50, 60, 1000, 1000};
    SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(dpi * 2, dpi * 2), reinterpret_cast<LPARAM>(&suggested));
    RECT place{};
    GetWindowRect(Child(WC_BUTTONW, L"Other"), &place);
    EXPECT_EQ(place.bottom - place.top, win32::ToPixels(600, dpi * 2));
    RECT inner{};
    GetClientRect(window, &inner);
    EXPECT_EQ(form.Width(), win32::ToTwips(inner.right, dpi * 2));
}

TEST_F(NativeViewTest, ProgressIsScaled) {
    HWND bar = Child(PROGRESS_CLASSW);
    form.ProgressBar1.Max = 4.0e9F;
    form.ProgressBar1.Value = 1.0e9F;
    form.Refresh();
    EXPECT_EQ(SendMessageW(bar, PBM_GETPOS, 0, 0), 2500);
    form.ProgressBar1.Value = 4.0e9F;
    form.Refresh();
    EXPECT_EQ(SendMessageW(bar, PBM_GETPOS, 0, 0), 10000);
    form.ProgressBar1.Value = 0.0F;
    form.Refresh();
    EXPECT_EQ(SendMessageW(bar, PBM_GETPOS, 0, 0), 0);
}

TEST(ScaledPosition, IsCutAndNeverUndefined) {
    EXPECT_EQ(win32::ScaledPosition(0, 100, 50, 10000), 5000);
    EXPECT_EQ(win32::ScaledPosition(10, 20, 5, 10000), 0);
    EXPECT_EQ(win32::ScaledPosition(10, 20, 25, 10000), 10000);
    EXPECT_EQ(win32::ScaledPosition(0, 0, 0, 10000), 0);
    EXPECT_EQ(win32::ScaledPosition(5, 5, 9, 10000), 0);
    EXPECT_EQ(win32::ScaledPosition(0, 1, std::numeric_limits<float>::quiet_NaN(), 10000), 0);
    EXPECT_EQ(win32::ScaledPosition(-3e38F, 3e38F, 0, 10000), 5000);
}

class NativeListTest : public NativeViewTest {
 protected:
    static std::string Line(HWND list, int index) {
        std::wstring text(static_cast<std::size_t>(SendMessageW(list, LB_GETTEXTLEN, static_cast<WPARAM>(index), 0)),
                          L'\0');
        SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
        return win32::FromWide(text);
    }

    void ExpectSameLines(const forms::ListBox& model, HWND list) {
        ASSERT_EQ(SendMessageW(list, LB_GETCOUNT, 0, 0), model.ListCount());
        for (int i = 0; i < model.ListCount(); ++i) {
            ASSERT_EQ(Line(list, i), model.List(i)) << i;
            ASSERT_EQ(SendMessageW(list, LB_GETSEL, static_cast<WPARAM>(i), 0) > 0, model.Selected(i)) << i;
        }
    }
};

TEST_F(NativeListTest, RefillingFiresNothing) {
    int clicks = 0;
    form.List1.Click = [&] { ++clicks; };
    form.List2.Click = [&] { ++clicks; };
    for (int round = 0; round < 3; ++round) {
        form.List1.Clear();
        form.List2.Clear();
        for (int i = 0; i < 20; ++i) {
            form.List1.AddItem("línea " + std::to_string(i));
            form.List2.AddItem("line " + std::to_string(i));
        }
        form.List2.SetSelected(3, true);
        form.List2.SetSelected(7, true);
        form.Refresh();
        Settle();
    }
    EXPECT_EQ(clicks, 0);
    ExpectSameLines(form.List1, List(false));
    ExpectSameLines(form.List2, List(true));
}

TEST_F(NativeListTest, EveryKindOfChangeIsMirrored) {
    std::uint32_t state = 20240607;
    const auto next = [&state](int limit) {
        state = state * 1664525U + 1013904223U;
        return static_cast<int>((state >> 8) % static_cast<std::uint32_t>(limit));
    };
    for (int step = 0; step < 400; ++step) {
        forms::ListBox& list = form.List2;
        const int count = list.ListCount();
        switch (next(6)) {
            case 0:
            case 1:
                list.InsertItem(next(count + 1), "line " + std::to_string(next(1000)));
                break;
            case 2:
                list.AddItem("added " + std::to_string(step));
                break;
            case 3:
                list.RemoveItem(next(count + 1));
                break;
            case 4:
                list.SetSelected(next(count + 1), next(2) == 0);
                break;
            default:
                if (next(20) == 0) {
                    list.Clear();
                }
                break;
        }
        if (next(3) == 0) {
            form.Refresh();
            ExpectSameLines(list, List(true));
        }
    }
}

TEST_F(NativeListTest, TheUsersChoiceReachesTheModel) {
    int clicks = 0;
    form.List1.Click = [&] { ++clicks; };
    for (int i = 0; i < 5; ++i) {
        form.List1.AddItem("line " + std::to_string(i));
    }
    form.Refresh();
    Click(List(false), 3);
    EXPECT_TRUE(Until([&] { return clicks == 1; }));
    EXPECT_EQ(form.List1.ListIndex(), 3);
    EXPECT_TRUE(form.List1.Selected(3));
    form.List1.SetListIndex(1);
    Settle();
    EXPECT_EQ(SendMessageW(List(false), LB_GETCURSEL, 0, 0), 1);
}

TEST_F(NativeListTest, SeveralLinesCanBeChosen) {
    for (int i = 0; i < 5; ++i) {
        form.List2.AddItem("line " + std::to_string(i));
    }
    form.Refresh();
    int clicks = 0;
    form.List2.Click = [&] { ++clicks; };
    Click(List(true), 1);
    ASSERT_TRUE(Until([&] { return clicks == 1; }));
    SetFocus(List(true));
    SendMessageW(List(true), LB_SETSEL, TRUE, 4);
    SendMessageW(window, WM_COMMAND, MAKEWPARAM(0, LBN_SELCHANGE), reinterpret_cast<LPARAM>(List(true)));
    ASSERT_TRUE(Until([&] { return clicks == 2; }));
    EXPECT_TRUE(form.List2.Selected(1));
    EXPECT_TRUE(form.List2.Selected(4));
    EXPECT_FALSE(form.List2.Selected(0));
}

TEST_F(NativeListTest, ADoubleClickRunsItsHandler) {
    form.List1.AddItem("only");
    form.Refresh();
    int doubled = 0;
    form.List1.DblClick = [&] { ++doubled; };
    PostMessageW(List(false), WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(5, 5));
    PostMessageW(List(false), WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    EXPECT_TRUE(Until([&] { return doubled == 1; }));
}

TEST_F(NativeListTest, LongLinesCanBeScrolledTo) {
    form.List1.AddItem("short");
    form.Refresh();
    const LRESULT narrow = SendMessageW(List(false), LB_GETHORIZONTALEXTENT, 0, 0);
    form.List1.AddItem("C:\\" + std::string(400, 'W'));
    form.Refresh();
    EXPECT_GT(SendMessageW(List(false), LB_GETHORIZONTALEXTENT, 0, 0), narrow + 1000);
    form.List1.Clear();
    form.Refresh();
    EXPECT_EQ(SendMessageW(List(false), LB_GETHORIZONTALEXTENT, 0, 0), 0);
}

TEST_F(NativeListTest, AHundredThousandLinesAreQuick) {
    static constexpr int lines = 100000;
    const auto fill = [this](int refreshed) {
        const auto start = std::chrono::steady_clock::now();
        form.List1.Clear();
        for (int i = 1; i <= lines; ++i) {
            form.List1.AddItem("C:\\Data\\Folder\\file number " + std::to_string(i) + ".txt");
            if (i % refreshed == 0) {
                form.Refresh();
            }
        }
        EXPECT_EQ(SendMessageW(List(false), LB_GETCOUNT, 0, 0), lines);
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
    };
    const auto atOnce = fill(lines);
    const auto bitByBit = fill(lines / 100);
    // Compared, not measured: how long either takes depends on what else the machine does. Starting over each time
    // would take fifty times as long.
    EXPECT_LT(bitByBit, 10 * atOnce) << "100 refreshes on the way must not start over each time";
    RecordProperty("milliseconds", static_cast<int>(bitByBit.count()));
}

}  // namespace
}  // namespace marlok::test
