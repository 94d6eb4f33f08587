#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>
#include <dbt.h>

#include <array>
#include <memory>

#include "forms/Controls.h"
#include "forms/FolderControls.h"
#include "forms/Form.h"
#include "forms/TabControl.h"
#include "forms/Windows.h"
#include "tests/windows/Waiting.h"
#include "win32/Win32Machine.h"
#include "win32/machine/Wide.h"
#include "win32/views/Twips.h"
#include "win32/views/WindowText.h"

namespace marlok::test {
namespace {

/// Counts how often something is called.
struct Count {
    int times = 0;
    forms::Event Handler() {
        return [this] { ++times; };
    }
};

/// Four tabs, the third of them disabled; a footer below the tabs.
class KitForm : public forms::Form {
 public:
    KitForm(forms::Windows& windows, const std::string& caption) : Form(windows, "Kit", caption) {
        Place(600, 600, 9000, 7500);
        SSTab1.MoveTo(150, 150, 8700, 6000);
        SSTab1.SetTabEnabled(2, false);
        Label1.MoveTo(450, 900, 3000, 300);
        Check1.MoveTo(450, 1300, 3000, 400);
        List1.MoveTo(450, 1800, 3000, 1500);
        List1.AccessibleName = "Locations";
        Frame1.MoveTo(4000, 900, 4000, 3000);
        Label2.MoveTo(300, 600, 2000, 300);
        Label2.SetContainer(&Frame1);
        Command1.MoveTo(450, 900, 2000, 400);
        Text1.MoveTo(450, 1500, 2000, 400);
        Command2.MoveTo(450, 900, 2000, 400);
        Image1.MoveTo(3000, 900, 3000, 3000);
        Image1.BackColor = forms::Rgb(10, 200, 30);
        Label3.MoveTo(150, 300, 1500, 300);
        Label3.SetContainer(&Image1);
        Command3.MoveTo(150, 900, 1500, 400);
        Command3.SetContainer(&Image1);
        Command4.MoveTo(150, 6600, 2000, 400);
        Command5.MoveTo(2400, 6600, 2000, 400);
        Command6.MoveTo(4650, 6600, 2000, 400);
        for (forms::Control* control : std::array<forms::Control*, 4>{&Label1, &Check1, &List1, &Frame1}) {
            control->PutOn(SSTab1, 0);
        }
        for (forms::Control* control : std::array<forms::Control*, 2>{&Command1, &Text1}) {
            control->PutOn(SSTab1, 1);
        }
        for (forms::Control* control : std::array<forms::Control*, 4>{&Command2, &Image1, &Label3, &Command3}) {
            control->PutOn(SSTab1, 3);
        }
    }

    forms::CommandButton* DefaultButton() override { return &Command5; }
    forms::CommandButton* CancelButton() override { return &Command6; }
    [[nodiscard]] std::string HelpSection() const override { return "kit"; }
    void Form_Resize() override { ++resized; }

    forms::TabControl SSTab1{*this, "SSTab1", {"Options", "Folder", "Files", "Review"}};
    forms::Label Label1{*this, "Label1", ""};
    forms::CheckBox Check1{*this, "Check1", "   Quiet"};
    forms::ListBox List1{*this, "List1"};
    forms::Frame Frame1{*this, "Frame1", "Around"};
    forms::Label Label2{*this, "Label2", ""};
    forms::CommandButton Command1{*this, "Command1", "Alpha"};
    forms::TextBox Text1{*this, "Text1"};
    forms::CommandButton Command2{*this, "Command2", "Beta"};
    forms::PictureBox Image1{*this, "Image1"};
    forms::Label Label3{*this, "Label3", ""};
    forms::CommandButton Command3{*this, "Command3", "Gamma"};
    forms::CommandButton Command4{*this, "Command4", "Help"};
    forms::CommandButton Command5{*this, "Command5", "Start"};
    forms::CommandButton Command6{*this, "Command6", " Stop"};
    int resized = 0;
};

class NativeKitTest : public ::testing::Test {
 protected:
    void SetUp() override {
        Prepare();
        form.Show();
        window = FindWindowW(L"MarlokWindow", win32::ToWide(caption).c_str());
        ASSERT_NE(window, nullptr);
        form.resized = 0;
        SetActiveWindow(window);
        Settle();
    }

    virtual void Prepare() {}

    [[nodiscard]] HWND Child(const wchar_t* className, const wchar_t* text = nullptr) const {
        return FindWindowExW(window, nullptr, className, text);
    }
    [[nodiscard]] HWND Strip() const { return Child(WC_TABCONTROLW); }
    [[nodiscard]] HWND Button(const wchar_t* caption_) const { return Child(WC_BUTTONW, caption_); }

    bool Until(const std::function<bool()>& condition) {
        return WaitUntil(condition, std::chrono::seconds(10), [this] { real.machine().desktop.WaitForInput(20); });
    }

    /// Delivers everything that waits now, and all that comes of it.
    void Settle() {
        for (int round = 0; round < 3; ++round) {
            real.machine().desktop.WaitForInput(0);
        }
    }

    void Key(HWND target, WPARAM key) {
        PostMessageW(target, WM_KEYDOWN, key, 0);
        Settle();
    }

    /// A key while others are held down.
    void KeyWith(HWND target, WPARAM key, std::initializer_list<int> held) {
        std::array<BYTE, 256> state{};
        for (const int one : held) {
            state.at(static_cast<std::size_t>(one)) = 0x80;
        }
        SetKeyboardState(state.data());
        Key(target, key);
        state.fill(0);
        SetKeyboardState(state.data());
    }

    void AltLetter(HWND target, wchar_t letter) {
        PostMessageW(target, WM_SYSCHAR, letter, LPARAM{1} << 29);
        Settle();
    }

    void ClickTab(int tab) {
        RECT place{};
        SendMessageW(Strip(), TCM_GETITEMRECT, static_cast<WPARAM>(tab), reinterpret_cast<LPARAM>(&place));
        const LPARAM point = MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
        PostMessageW(Strip(), WM_LBUTTONDOWN, MK_LBUTTON, point);
        PostMessageW(Strip(), WM_LBUTTONUP, 0, point);
        Settle();
    }

    [[nodiscard]] LRESULT ShownTab() const { return SendMessageW(Strip(), TCM_GETCURSEL, 0, 0); }

    /// What the user would see at that place of the window, in twips; `window` draws itself into memory.
    [[nodiscard]] COLORREF PixelOnScreen(int x, int y) {
        UpdateAll();
        HDC surface = GetDC(window);
        const UINT dpi = GetDpiForWindow(window);
        const COLORREF colour = GetPixel(surface, win32::ToPixels(x, dpi), win32::ToPixels(y, dpi));
        ReleaseDC(window, surface);
        return colour;
    }

    void UpdateAll() {
        SetWindowPos(window, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
        RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
        GdiFlush();
        Settle();
    }

    static std::string Text(HWND control) { return win32::FromWide(win32::WindowText(control)); }

    win32::Win32Machine real;
    const std::string caption = "Kit " + std::to_string(GetCurrentProcessId()) + " " +
                                ::testing::UnitTest::GetInstance()->current_test_info()->name();
    forms::Windows windows{real.machine().desktop, real.machine().clock, &real.views()};
    KitForm& form = windows.Load<KitForm>(caption);
    HWND window = nullptr;
};

TEST_F(NativeKitTest, TheStripShowsTheCaptionsOfAllTabs) {
    ASSERT_NE(Strip(), nullptr);
    ASSERT_EQ(SendMessageW(Strip(), TCM_GETITEMCOUNT, 0, 0), 4);
    for (int tab = 0; tab < 4; ++tab) {
        std::array<wchar_t, 50> text{};
        TCITEMW item{};
        item.mask = TCIF_TEXT;
        item.pszText = text.data();
        item.cchTextMax = static_cast<int>(text.size());
        SendMessageW(Strip(), TCM_GETITEMW, static_cast<WPARAM>(tab), reinterpret_cast<LPARAM>(&item));
        EXPECT_EQ(win32::FromWide(item.pszText), form.SSTab1.TabCaption(tab));
    }
}

TEST_F(NativeKitTest, AClickOnATabBringsItUp) {
    Count clicks;
    form.SSTab1.Click = clicks.Handler();
    EXPECT_EQ(Button(L"Alpha"), nullptr) << "made when it is first shown";
    HWND list = Child(WC_LISTBOXW);
    EXPECT_TRUE(IsWindowVisible(list));
    ClickTab(1);
    EXPECT_EQ(form.SSTab1.Tab(), 1);
    EXPECT_EQ(clicks.times, 1);
    EXPECT_FALSE(IsWindowVisible(list));
    ASSERT_NE(Button(L"Alpha"), nullptr);
    EXPECT_TRUE(IsWindowVisible(Button(L"Alpha")));
    ClickTab(0);
    EXPECT_EQ(clicks.times, 2);
    EXPECT_TRUE(IsWindowVisible(list));
    EXPECT_FALSE(IsWindowVisible(Button(L"Alpha")));
}

TEST_F(NativeKitTest, AClickOnADisabledTabChangesNothing) {
    Count clicks;
    form.SSTab1.Click = clicks.Handler();
    ClickTab(2);
    EXPECT_EQ(form.SSTab1.Tab(), 0);
    EXPECT_EQ(ShownTab(), 0);
    EXPECT_EQ(clicks.times, 0);
    form.SSTab1.SetTabEnabled(2, true);
    ClickTab(2);
    EXPECT_EQ(form.SSTab1.Tab(), 2);
    EXPECT_EQ(clicks.times, 1);
}

TEST_F(NativeKitTest, AToolThatMovesTheStripIsAUser) {
    Count clicks;
    form.SSTab1.Click = clicks.Handler();
    SendMessageW(Strip(), TCM_SETCURFOCUS, 3, 0);
    Settle();
    EXPECT_EQ(form.SSTab1.Tab(), 3);
    EXPECT_EQ(clicks.times, 1);
    SendMessageW(Strip(), TCM_SETCURFOCUS, 2, 0);
    Settle();
    EXPECT_EQ(form.SSTab1.Tab(), 3);
    EXPECT_EQ(ShownTab(), 3);
    EXPECT_EQ(clicks.times, 1);
}

TEST_F(NativeKitTest, ATabThatIsRefusedDoesNotStayOnTheStrip) {
    SendMessageW(Strip(), TCM_SETCURFOCUS, 1, 0);  // enabled still
    form.SSTab1.SetTabEnabled(1, false);
    Settle();
    EXPECT_EQ(form.SSTab1.Tab(), 0);
    EXPECT_EQ(ShownTab(), 0);
}

TEST_F(NativeKitTest, CodeBringsUpATabOnce) {
    Count clicks;
    form.SSTab1.Click = clicks.Handler();
    form.SSTab1.SetTab(2);
    Settle();
    EXPECT_EQ(ShownTab(), 2) << "code may bring up a disabled one";
    EXPECT_EQ(form.SSTab1.Tab(), 2);
    EXPECT_EQ(clicks.times, 1);
}

TEST_F(NativeKitTest, ArrowKeysPassDisabledTabsAndEndAtTheLast) {
    SetFocus(Strip());
    Key(Strip(), VK_RIGHT);
    EXPECT_EQ(form.SSTab1.Tab(), 1);
    Key(Strip(), VK_RIGHT);
    EXPECT_EQ(form.SSTab1.Tab(), 3);
    Key(Strip(), VK_RIGHT);
    EXPECT_EQ(form.SSTab1.Tab(), 3);
    Key(Strip(), VK_LEFT);
    EXPECT_EQ(form.SSTab1.Tab(), 1);
    Key(Strip(), VK_HOME);
    EXPECT_EQ(form.SSTab1.Tab(), 0);
    Key(Strip(), VK_END);
    EXPECT_EQ(form.SSTab1.Tab(), 3);
    EXPECT_EQ(ShownTab(), 3);
    EXPECT_EQ(GetFocus(), Strip()) << "the keyboard stays on the strip";
}

TEST_F(NativeKitTest, ControlTabTurnsThePagesFromAnywhere) {
    SetFocus(Child(WC_LISTBOXW));
    KeyWith(Child(WC_LISTBOXW), VK_TAB, {VK_CONTROL});
    EXPECT_EQ(form.SSTab1.Tab(), 1);
    EXPECT_EQ(GetFocus(), Button(L"Alpha")) << "what had the keyboard is gone";
    KeyWith(GetFocus(), VK_NEXT, {VK_CONTROL});
    EXPECT_EQ(form.SSTab1.Tab(), 3);
    EXPECT_EQ(GetFocus(), Button(L"Beta"));
    KeyWith(GetFocus(), VK_TAB, {VK_CONTROL});
    EXPECT_EQ(form.SSTab1.Tab(), 0) << "round the end";
    KeyWith(GetFocus(), VK_TAB, {VK_CONTROL, VK_SHIFT});
    EXPECT_EQ(form.SSTab1.Tab(), 3);
    KeyWith(GetFocus(), VK_PRIOR, {VK_CONTROL});
    EXPECT_EQ(form.SSTab1.Tab(), 1);
    SetFocus(Button(L"Help"));
    KeyWith(Button(L"Help"), VK_TAB, {VK_CONTROL});
    EXPECT_EQ(form.SSTab1.Tab(), 3);
    EXPECT_EQ(GetFocus(), Button(L"Help")) << "it is still there";
}

TEST_F(NativeKitTest, TheKeyboardGoesInTheOrderOfTheForm) {
    EXPECT_EQ(GetFocus(), Strip()) << "the first of the form, though it lies behind all others";
    EXPECT_EQ(GetWindow(Strip(), GW_HWNDNEXT), nullptr);
    std::vector<HWND> order;
    for (int step = 0; step < 6; ++step) {
        Key(GetFocus(), VK_TAB);
        order.push_back(GetFocus());
    }
    EXPECT_EQ(order, (std::vector<HWND>{Button(L"   Quiet"), Child(WC_LISTBOXW), Button(L"Help"), Button(L"Start"),
                                        Button(L" Stop"), Strip()}));
    KeyWith(GetFocus(), VK_TAB, {VK_SHIFT});
    EXPECT_EQ(GetFocus(), Button(L" Stop"));
}

TEST_F(NativeKitTest, TheKeyboardGoesThroughControlsInAPicture) {
    form.SSTab1.SetTab(3);
    SetFocus(Button(L"Beta"));
    Key(Button(L"Beta"), VK_TAB);
    EXPECT_EQ(Text(GetFocus()), "Gamma");
    Key(GetFocus(), VK_TAB);
    EXPECT_EQ(GetFocus(), Button(L"Help"));
}

TEST_F(NativeKitTest, F1AsksForHelpAndNeedsNoButton) {
    std::vector<std::string> asked;
    form.Collection().OpenHelp = [&asked](const std::string& section) { asked.push_back(section); };
    form.Command4.Enabled = false;
    Key(Child(WC_LISTBOXW), VK_F1);
    EXPECT_EQ(asked, std::vector<std::string>{"kit"});
}

TEST_F(NativeKitTest, EscapeHasItsButton) {
    Count cancel;
    form.Command6.Click = cancel.Handler();
    Key(Child(WC_LISTBOXW), VK_ESCAPE);
    EXPECT_EQ(cancel.times, 1);
    form.Command6.Visible = false;
    Key(Child(WC_LISTBOXW), VK_ESCAPE);
    EXPECT_EQ(cancel.times, 1);
}

TEST_F(NativeKitTest, EnterPressesTheFocusedButtonElseTheDefaultOne) {
    Count started;
    Count helped;
    form.Command5.Click = started.Handler();
    form.Command4.Click = helped.Handler();
    SetFocus(Child(WC_LISTBOXW));
    Settle();
    EXPECT_EQ(GetWindowLongPtrW(Button(L"Start"), GWL_STYLE) & BS_TYPEMASK, BS_DEFPUSHBUTTON);
    EXPECT_EQ(SendMessageW(window, DM_GETDEFID, 0, 0), MAKELRESULT(GetDlgCtrlID(Button(L"Start")), DC_HASDEFID));
    Key(Child(WC_LISTBOXW), VK_RETURN);
    EXPECT_EQ(started.times, 1);
    SetFocus(Button(L"Help"));
    Settle();
    EXPECT_EQ(GetWindowLongPtrW(Button(L"Start"), GWL_STYLE) & BS_TYPEMASK, BS_PUSHBUTTON);
    EXPECT_EQ(GetWindowLongPtrW(Button(L"Help"), GWL_STYLE) & BS_TYPEMASK, BS_DEFPUSHBUTTON);
    Key(Button(L"Help"), VK_RETURN);
    EXPECT_EQ(helped.times, 1);
    EXPECT_EQ(started.times, 1);
    SetFocus(Button(L"   Quiet"));
    Key(Button(L"   Quiet"), VK_RETURN);
    EXPECT_EQ(started.times, 2) << "a check box is no button that Enter presses";
    EXPECT_EQ(form.Check1.Value.Get(), forms::CheckBox::State::unchecked);
    form.Command5.Enabled = false;
    Key(Child(WC_LISTBOXW), VK_RETURN);
    EXPECT_EQ(started.times, 2);
}

TEST_F(NativeKitTest, AHeldEnterKeyStartsNothing) {
    Count started;
    form.Command5.Click = started.Handler();
    PostMessageW(Child(WC_LISTBOXW), WM_KEYDOWN, VK_RETURN, LPARAM{1} << 30);
    Settle();
    EXPECT_EQ(started.times, 0);
}

TEST_F(NativeKitTest, AltAndALetterPressTheOneButton) {
    Count helped;
    Count checked;
    form.Command4.Click = helped.Handler();
    form.Check1.Click = checked.Handler();
    AltLetter(Child(WC_LISTBOXW), L'h');
    EXPECT_EQ(helped.times, 1);
    AltLetter(Child(WC_LISTBOXW), L'Q');
    EXPECT_EQ(checked.times, 1) << "leading blanks do not count";
    EXPECT_EQ(form.Check1.Value.Get(), forms::CheckBox::State::checked);
    form.SSTab1.SetTab(1);
    AltLetter(Button(L"Help"), L'q');
    EXPECT_EQ(checked.times, 1) << "on another tab";
    form.Command4.Enabled = false;
    AltLetter(Button(L"Start"), L'h');
    EXPECT_EQ(helped.times, 1);
}

TEST_F(NativeKitTest, AltAndALetterGoRoundAmongSeveralButtons) {
    Count pressed;
    form.Command5.Click = pressed.Handler();
    form.Command6.Click = pressed.Handler();
    SetFocus(Child(WC_LISTBOXW));
    AltLetter(Child(WC_LISTBOXW), L's');
    EXPECT_EQ(GetFocus(), Button(L"Start"));
    AltLetter(GetFocus(), L's');
    EXPECT_EQ(GetFocus(), Button(L" Stop"));
    AltLetter(GetFocus(), L's');
    EXPECT_EQ(GetFocus(), Button(L"Start"));
    EXPECT_EQ(pressed.times, 0);
}

TEST_F(NativeKitTest, EnterOpensTheHighlightedFolder) {
    class FolderForm : public forms::Form {
     public:
        FolderForm(forms::Windows& all, FileSystem& files, const std::string& name)
            : Form(all, "Folders", name), Dir1(*this, "Dir1", files) {
            Place(900, 900, 4500, 4500);
            Dir1.MoveTo(0, 0, 4500, 3000);
            Command1.MoveTo(0, 3300, 2000, 400);
        }
        forms::CommandButton* DefaultButton() override { return &Command1; }
        forms::DirListBox Dir1;
        forms::CommandButton Command1{*this, "Command1", "Add"};
    };
    auto& folders = windows.Load<FolderForm>(real.machine().files, caption + " folders");
    Count added;
    folders.Command1.Click = added.Handler();
    folders.Dir1.SetPath("C:\\windows");
    folders.Show();
    Settle();
    HWND other = FindWindowW(L"MarlokWindow", win32::ToWide(folders.Caption()).c_str());
    HWND list = FindWindowExW(other, nullptr, WC_LISTBOXW, nullptr);
    ASSERT_NE(list, nullptr);
    SendMessageW(list, LB_SETCURSEL, 0, 0);
    SendMessageW(other, WM_COMMAND, MAKEWPARAM(0, LBN_SELCHANGE), reinterpret_cast<LPARAM>(list));
    Settle();
    Key(list, VK_RETURN);
    EXPECT_EQ(folders.Dir1.Path(), "C:\\");
    EXPECT_EQ(added.times, 0);
}

TEST_F(NativeKitTest, ADriveThatComesIsShownAtOnceButNotInsideAWindowProcedure) {
    struct OneMore : Drives {
        std::vector<Drive> List() override { return there; }
        std::vector<Drive> there{{"C:\\", Drive::Kind::fixed, "System"}};
    };
    class DriveForm : public forms::Form {
     public:
        DriveForm(forms::Windows& all, Drives& drives, const std::string& name)
            : Form(all, "Drives", name), Drive1(*this, "Drive1", drives) {
            Drive1.MoveTo(0, 0, 3000, 345);
        }
        forms::DriveListBox Drive1;
    };
    OneMore drives;
    auto& shown = windows.Load<DriveForm>(drives, caption + " drives");
    shown.Show();
    Settle();
    HWND other = FindWindowW(L"MarlokWindow", win32::ToWide(shown.Caption()).c_str());
    HWND list = FindWindowExW(other, nullptr, WC_COMBOBOXW, nullptr);
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(SendMessageW(list, CB_GETCOUNT, 0, 0), 1);
    drives.there.push_back({"E:\\", Drive::Kind::removable, "Stick"});
    SendMessageW(other, WM_DEVICECHANGE, DBT_DEVICEARRIVAL, 0);
    EXPECT_EQ(shown.Drive1.Items().size(), 1U);
    Settle();
    EXPECT_EQ(shown.Drive1.Items().size(), 2U);
    EXPECT_EQ(SendMessageW(list, CB_GETCOUNT, 0, 0), 2);
    shown.Unload();
    windows.Turn();
}

TEST_F(NativeKitTest, ACheckBoxHasThreeStates) {
    HWND box = Button(L"   Quiet");
    ASSERT_NE(box, nullptr);
    Count clicks;
    form.Check1.Click = clicks.Handler();
    EXPECT_EQ(SendMessageW(box, BM_GETCHECK, 0, 0), BST_UNCHECKED);
    PostMessageW(box, BM_CLICK, 0, 0);
    Settle();
    EXPECT_EQ(form.Check1.Value.Get(), forms::CheckBox::State::checked);
    EXPECT_EQ(SendMessageW(box, BM_GETCHECK, 0, 0), BST_CHECKED);
    EXPECT_EQ(clicks.times, 1);
    form.Check1.Value = forms::CheckBox::State::greyed;
    EXPECT_EQ(SendMessageW(box, BM_GETCHECK, 0, 0), BST_INDETERMINATE);
    EXPECT_EQ(clicks.times, 1) << "code is no user";
    PostMessageW(box, BM_CLICK, 0, 0);
    Settle();
    EXPECT_EQ(form.Check1.Value.Get(), forms::CheckBox::State::unchecked);
    EXPECT_EQ(SendMessageW(box, BM_GETCHECK, 0, 0), BST_UNCHECKED);
}

TEST_F(NativeKitTest, FontsAreTakenAndGivenBack) {
    const auto fontOf = [](HWND control) {
        LOGFONTW font{};
        GetObjectW(reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)), sizeof font, &font);
        return font;
    };
    HWND list = Child(WC_LISTBOXW);
    const LOGFONTW before = fontOf(list);
    EXPECT_LT(before.lfWeight, FW_BOLD);
    form.List1.TextFont = forms::Font{"Courier New", 20, true};
    const LOGFONTW big = fontOf(list);
    const UINT dpi = GetDpiForWindow(window);
    EXPECT_EQ(big.lfHeight, -MulDiv(20, static_cast<int>(dpi), 72));
    EXPECT_EQ(big.lfWeight, FW_BOLD);
    EXPECT_STREQ(big.lfFaceName, L"Courier New");
    RECT suggested{50, 60, 1000, 1000};
    SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(dpi * 2, dpi * 2), reinterpret_cast<LPARAM>(&suggested));
    EXPECT_EQ(fontOf(list).lfHeight, -MulDiv(20, static_cast<int>(dpi) * 2, 72));
    SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&suggested));
    form.List1.TextFont = forms::Font{};
    EXPECT_EQ(fontOf(list).lfHeight, before.lfHeight);
    EXPECT_STREQ(fontOf(list).lfFaceName, before.lfFaceName);
}

TEST_F(NativeKitTest, AFrameShiftsWhatLiesInItAndStaysBehindIt) {
    form.Label2.Caption = "inside";
    HWND label = Child(WC_STATICW, L"inside");
    HWND frame = Button(L"Around");
    ASSERT_NE(label, nullptr) << "it is a sibling of the frame";
    ASSERT_NE(frame, nullptr);
    const UINT dpi = GetDpiForWindow(window);
    RECT place{};
    GetWindowRect(label, &place);
    MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
    EXPECT_EQ(place.left, win32::ToPixels(4300, dpi));
    EXPECT_EQ(place.top, win32::ToPixels(1500, dpi));
    EXPECT_EQ(GetWindow(frame, GW_HWNDNEXT), Strip()) << "only the strip is further behind";
    form.Frame1.Left = 4150;
    GetWindowRect(label, &place);
    MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
    EXPECT_EQ(place.left, win32::ToPixels(4450, dpi));
    form.SSTab1.SetTab(1);
    EXPECT_FALSE(IsWindowVisible(label)) << "it goes with the frame";
}

TEST_F(NativeKitTest, APictureTakesWhatLiesInItIntoItsWindow) {
    form.SSTab1.SetTab(3);
    form.Label3.Caption = "on the picture";
    HWND picture = nullptr;
    EnumChildWindows(
        window,
        [](HWND child, LPARAM found) -> BOOL {
            if (win32::WindowText(child) == L"on the picture") {
                *reinterpret_cast<HWND*>(found) = GetParent(child);
            }
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&picture));
    ASSERT_NE(picture, nullptr);
    ASSERT_NE(picture, window);
    EXPECT_EQ(GetParent(picture), window);
    HWND button = FindWindowExW(picture, nullptr, WC_BUTTONW, L"Gamma");
    ASSERT_NE(button, nullptr);
    Count pressed;
    form.Command3.Click = pressed.Handler();
    PostMessageW(button, BM_CLICK, 0, 0);
    Settle();
    EXPECT_EQ(pressed.times, 1) << "what it says to the picture reaches the form";
    form.Command3.SetContainer(nullptr);
    EXPECT_EQ(GetParent(button), window);
    form.Command3.SetContainer(&form.Image1);
    EXPECT_EQ(GetParent(button), picture);
    form.Image1.Visible = false;
    EXPECT_FALSE(IsWindowVisible(button));
}

TEST_F(NativeKitTest, ListsAreCalledByTheirAccessibleName) {
    EXPECT_EQ(Text(Child(WC_LISTBOXW)), "Locations");
    form.List1.AccessibleName = "Other locations";
    EXPECT_EQ(Text(Child(WC_LISTBOXW)), "Other locations");
    form.Check1.AccessibleName = "Run in the background";
    EXPECT_EQ(Text(Button(L"   Quiet")), "   Quiet") << "its caption is what is seen";
}

TEST_F(NativeKitTest, TheWindowIsNeverSmallerThanTheFormAllows) {
    form.SetLeastSize(4500, 3000);
    SetWindowPos(window, nullptr, 0, 0, 50, 50, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    const UINT dpi = GetDpiForWindow(window);
    MINMAXINFO limits{};
    SendMessageW(window, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
    RECT least{0, 0, win32::ToPixels(4500, dpi), win32::ToPixels(3000, dpi)};
    AdjustWindowRectExForDpi(&least, WS_OVERLAPPEDWINDOW, FALSE, 0, dpi);
    EXPECT_EQ(limits.ptMinTrackSize.x, least.right - least.left);
    EXPECT_EQ(limits.ptMinTrackSize.y, least.bottom - least.top);
    form.SetLeastSize(200000, 200000);
    limits = {};
    SendMessageW(window, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
    RECT work{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    EXPECT_EQ(limits.ptMinTrackSize.x, work.right - work.left);
    EXPECT_EQ(limits.ptMinTrackSize.y, work.bottom - work.top);
}

TEST_F(NativeKitTest, ALabelOnATabHasThePagesBackground) {
    RECT page{};
    GetClientRect(Strip(), &page);
    const COLORREF beside = PixelOnScreen(3600, 1000);
    EXPECT_NE(beside, CLR_INVALID);
    EXPECT_EQ(PixelOnScreen(2000, 1000), beside);
    EXPECT_EQ(PixelOnScreen(4600, 1600), PixelOnScreen(4600, 2500)) << "the label in the frame, and the frame";
    EXPECT_EQ(PixelOnScreen(4600, 1600), beside);
}

class NativeGradientTest : public NativeKitTest {
 protected:
    void Prepare() override {
        std::vector<forms::Colour> rows;
        for (std::uint32_t row = 0; row < 64; ++row) {
            rows.push_back(forms::Rgb(0, row * 3, 255 - row * 3));
        }
        form.SetBackdrop(rows);
        form.SSTab1.Visible = false;
        Footer.MoveTo(7200, 6300, 1500, 1000);
    }

    forms::Label Footer{form, "Footer", ""};
};

TEST_F(NativeGradientTest, TheRowsAreSpreadOverTheWindow) {
    const UINT dpi = GetDpiForWindow(window);
    const int height = win32::ToPixels(7500, dpi);
    for (const int row : {0, 20, 40, 63}) {
        const int middle = win32::ToTwips((2 * row + 1) * height / 128, dpi);
        EXPECT_EQ(PixelOnScreen(100, middle), form.Backdrop()[static_cast<std::size_t>(row)]) << row;
    }
}

TEST_F(NativeGradientTest, ALabelShowsTheRowsBehindIt) {
    int different = 0;
    for (int y = 6350; y < 7250; y += 90) {
        EXPECT_EQ(PixelOnScreen(8000, y), PixelOnScreen(100, y)) << y;
        different += PixelOnScreen(8000, y) != PixelOnScreen(8000, 6350) ? 1 : 0;
    }
    EXPECT_GT(different, 3);
    form.Place(600, 600, 9000, 9000);
    EXPECT_EQ(PixelOnScreen(8000, 6800), PixelOnScreen(100, 6800)) << "and after the rows have moved";
}

TEST_F(NativeKitTest, LabelsAndListsTakeTheirColours) {
    form.Label1.BackColor = forms::Rgb(200, 100, 50);
    EXPECT_EQ(PixelOnScreen(2000, 1000), RGB(200, 100, 50));
    form.List1.BackColor = forms::Rgb(1, 2, 3);
    EXPECT_EQ(PixelOnScreen(2000, 2500), RGB(1, 2, 3));
    form.List1.BackColor = forms::systemColour;
    EXPECT_EQ(PixelOnScreen(2000, 2500), GetSysColor(COLOR_WINDOW));
}

TEST_F(NativeKitTest, ALabelIsAligned) {
    form.Label1.Caption = "aligned";
    HWND label = Child(WC_STATICW, L"aligned");
    ASSERT_NE(label, nullptr);
    const auto style = [label] { return GetWindowLongPtrW(label, GWL_STYLE) & SS_TYPEMASK; };
    EXPECT_EQ(style(), SS_LEFT);
    form.Label1.Alignment = forms::Label::Align::centre;
    EXPECT_EQ(style(), SS_CENTER);
    form.Label1.Alignment = forms::Label::Align::right;
    EXPECT_EQ(style(), SS_RIGHT);
    EXPECT_NE(GetWindowLongPtrW(label, GWL_STYLE) & SS_NOPREFIX, 0);
}

TEST_F(NativeKitTest, ADisabledTabIsPaler) {
    const auto darkest = [this](int tab) {
        UpdateAll();
        RECT place{};
        SendMessageW(Strip(), TCM_GETITEMRECT, static_cast<WPARAM>(tab), reinterpret_cast<LPARAM>(&place));
        InflateRect(&place, -4, -4);
        HDC surface = GetDC(Strip());
        int least = 255 * 3;
        for (LONG y = place.top; y < place.bottom; ++y) {
            for (LONG x = place.left; x < place.right; ++x) {
                const COLORREF colour = GetPixel(surface, x, y);
                least = std::min(least, GetRValue(colour) + GetGValue(colour) + GetBValue(colour));
            }
        }
        ReleaseDC(Strip(), surface);
        return least;
    };
    const int disabled = darkest(2);
    EXPECT_GT(disabled, darkest(1) + 100);
    form.SSTab1.SetTabEnabled(2, true);
    EXPECT_LT(darkest(2), disabled - 100);
}

TEST_F(NativeKitTest, TheStripNeverPaintsOverWhatLiesOnIt) {
    form.List1.BackColor = forms::Rgb(1, 2, 3);
    EXPECT_EQ(PixelOnScreen(2000, 2500), RGB(1, 2, 3));
    for (int round = 0; round < 3; ++round) {
        RedrawWindow(Strip(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
        HDC surface = GetDC(window);
        const UINT dpi = GetDpiForWindow(window);
        EXPECT_EQ(GetPixel(surface, win32::ToPixels(2000, dpi), win32::ToPixels(2500, dpi)), RGB(1, 2, 3));
        ReleaseDC(window, surface);
    }
}

TEST_F(NativeKitTest, AControlCanGoBeforeItsForm) {
    auto late = std::make_unique<forms::CommandButton>(form, "Late", "Late");
    late->MoveTo(6900, 6600, 1500, 400);
    Count pressed;
    late->Click = pressed.Handler();
    HWND button = Button(L"Late");
    ASSERT_NE(button, nullptr);
    SetFocus(button);
    SendMessageW(button, BM_CLICK, 0, 0);
    late.reset();
    EXPECT_FALSE(IsWindow(button));
    Settle();
    EXPECT_EQ(pressed.times, 0) << "there is nobody any more to press";
    EXPECT_TRUE(IsWindowVisible(window));
}

TEST_F(NativeKitTest, AShownFormCanGoWithAllItsControls) {
    form.SSTab1.SetTab(3);
    SetFocus(Button(L"Beta"));
    PostMessageW(Button(L"Beta"), BM_CLICK, 0, 0);
    form.Unload();
    windows.Run();
    EXPECT_FALSE(IsWindow(window));
}

TEST_F(NativeKitTest, ALockedTextBoxCannotBeTypedIn) {
    form.SSTab1.SetTab(1);
    form.Text1.Text = "fixed";
    form.Text1.Locked = true;
    Settle();
    HWND edit = Child(WC_EDITW);
    PostMessageW(edit, WM_CHAR, L'x', 0);
    Settle();
    EXPECT_EQ(Text(edit), "fixed");
    form.Text1.Locked = false;
    Settle();
    PostMessageW(edit, WM_CHAR, L'x', 0);
    EXPECT_TRUE(Until([&] { return form.Text1.Text.Get() == "xfixed"; })) << form.Text1.Text.Get();
}

class NativeLargeTest : public NativeKitTest {
 protected:
    void Prepare() override { form.Place(600, 600, 150000, 150000); }
};

TEST_F(NativeLargeTest, AWindowLargerThanTheScreenIsCutToIt) {
    RECT work{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    RECT outer{};
    GetWindowRect(window, &outer);
    EXPECT_TRUE(EqualRect(&outer, &work));
    RECT inner{};
    GetClientRect(window, &inner);
    EXPECT_EQ(form.Width(), win32::ToTwips(inner.right, GetDpiForWindow(window)));
}

}  // namespace
}  // namespace marlok::test
