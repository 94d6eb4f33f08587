#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <set>

#include "forms/FolderControls.h"
#include "forms/Form.h"
#include "forms/Windows.h"
#include "tests/windows/Waiting.h"
#include "win32/Win32Machine.h"
#include "win32/machine/Wide.h"

namespace marlok::test {
namespace {

/// Drives that come and go as a test wants.
struct ScriptedDrives : Drives {
    std::vector<Drive> drives;
    std::vector<Drive> List() override { return drives; }
};

class BrowserForm : public forms::Form {
 public:
    BrowserForm(forms::Windows& windows, const std::string& caption, Drives& drives, FileSystem& files)
        : Form(windows, "Browser", caption),
          Drive1(*this, "Drive1", drives),
          Dir1(*this, "Dir1", files),
          File1(*this, "File1", files) {
        Place(1500, 1500, 6000, 6000);
        Drive1.MoveTo(0, 0, 3000, 345);
        Dir1.MoveTo(0, 600, 3000, 4000);
        File1.MoveTo(3000, 600, 3000, 4000);
    }

    forms::DriveListBox Drive1;
    forms::DirListBox Dir1;
    forms::FileListBox File1;
};

class NativeFoldersTest : public ::testing::Test {
 protected:
    void SetUp() override {
        drives.drives = {{"C:\\", Drive::Kind::fixed, "Windows"},
                         {"E:\\", Drive::Kind::removable, ""},
                         {"F:\\", Drive::Kind::network, "Daten 日本"}};
        for (const char* name : {"One", "One/Deep", "Two", "Zwölf"}) {
            std::filesystem::create_directories(scratch / std::filesystem::u8path(name));
        }
        for (const char* name : {"a.txt", "b.txt", "c.txt", "d.txt"}) {
            std::ofstream(scratch / name) << name;
        }
        form = &windows.Load<BrowserForm>(caption, drives, real.machine().files);
        form->Drive1.Refresh();
        form->Drive1.SetDriveQuietly("C:\\");
        form->Dir1.SetPath(root);
        form->File1.SetPath(root);
        form->Show();
        window = FindWindowW(L"MarlokWindow", win32::ToWide(caption).c_str());
        ASSERT_NE(window, nullptr);
        combo = FindWindowExW(window, nullptr, WC_COMBOBOXW, nullptr);
        for (HWND list = nullptr; (list = FindWindowExW(window, list, WC_LISTBOXW, nullptr)) != nullptr;) {
            ((GetWindowLongPtrW(list, GWL_STYLE) & LBS_EXTENDEDSEL) != 0 ? files : folders) = list;
        }
        ASSERT_NE(combo, nullptr);
        ASSERT_NE(folders, nullptr);
        ASSERT_NE(files, nullptr);
    }

    void TearDown() override {
        std::error_code ignored;  // what stays behind is in the folder for temporary files
        std::filesystem::remove_all(scratch, ignored);
    }

    bool Until(const std::function<bool()>& condition) {
        return WaitUntil(condition, std::chrono::seconds(10), [this] { real.machine().desktop.WaitForInput(20); });
    }

    /// Delivers everything that waits now, and shows what came of it.
    void Settle() {
        real.machine().desktop.WaitForInput(0);
        form->Refresh();
    }

    static LPARAM PointOn(HWND list, int line) {
        RECT place{};
        SendMessageW(list, LB_GETITEMRECT, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(&place));
        return MAKELPARAM(place.left + 5, (place.top + place.bottom) / 2);
    }

    static void Click(HWND list, int line, WPARAM keys = 0) {
        PostMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON | keys, PointOn(list, line));
        PostMessageW(list, WM_LBUTTONUP, keys, PointOn(list, line));
    }

    static void DoubleClick(HWND list, int line) {
        Click(list, line);
        PostMessageW(list, WM_LBUTTONDBLCLK, MK_LBUTTON, PointOn(list, line));
        PostMessageW(list, WM_LBUTTONUP, 0, PointOn(list, line));
    }

    /// What clicks on a line of the folders do, all in one go: nothing of the program runs in between.
    void ClickAndSay(int line, std::initializer_list<WORD> notifications) const {
        SendMessageW(folders, LB_SETCURSEL, static_cast<WPARAM>(line), 0);
        for (const WORD notification : notifications) {
            SendMessageW(window, WM_COMMAND, MAKEWPARAM(0, notification), reinterpret_cast<LPARAM>(folders));
        }
    }

    static void Key(HWND target, WPARAM key) {
        PostMessageW(target, WM_KEYDOWN, key, 1);
        PostMessageW(target, WM_KEYUP, key, 0xC0000001);
    }

    /// The lines that a list box or combo box really holds.
    static std::vector<std::string> Lines(HWND list) {
        const bool box = IsCombo(list);
        std::vector<std::string> lines;
        const LRESULT count = SendMessageW(list, box ? CB_GETCOUNT : LB_GETCOUNT, 0, 0);
        for (LRESULT line = 0; line < count; ++line) {
            const auto index = static_cast<WPARAM>(line);
            const LRESULT length = SendMessageW(list, box ? CB_GETLBTEXTLEN : LB_GETTEXTLEN, index, 0);
            std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
            SendMessageW(list, box ? CB_GETLBTEXT : LB_GETTEXT, index, reinterpret_cast<LPARAM>(text.data()));
            text.resize(static_cast<std::size_t>(length));
            lines.push_back(win32::FromWide(text));
        }
        return lines;
    }

    static bool IsCombo(HWND list) {
        wchar_t name[32] = {};
        GetClassNameW(list, name, 32);
        return lstrcmpiW(name, WC_COMBOBOXW) == 0;
    }

    int LineOf(const std::string& name) const {
        const auto& lines = form->Dir1.Items();
        for (std::size_t line = 0; line < lines.size(); ++line) {
            if (lines[line].ends_with("   " + name)) {
                return static_cast<int>(line);
            }
        }
        return -1;
    }

    static std::string ScratchRoot() {
        return (std::filesystem::temp_directory_path() /
                ("marlok-folders-" + std::to_string(GetCurrentProcessId()) + "-" +
                 ::testing::UnitTest::GetInstance()->current_test_info()->name()))
            .string();
    }

    const std::string root = ScratchRoot();
    const std::filesystem::path scratch{root};
    win32::Win32Machine real;
    ScriptedDrives drives;
    const std::string caption = "Browser " + std::to_string(GetCurrentProcessId()) + " " +
                                ::testing::UnitTest::GetInstance()->current_test_info()->name();
    forms::Windows windows{real.machine().desktop, real.machine().clock, &real.views()};
    BrowserForm* form = nullptr;
    HWND window = nullptr;
    HWND combo = nullptr;
    HWND folders = nullptr;
    HWND files = nullptr;
};

TEST_F(NativeFoldersTest, TheDropDownListHoldsTheDrives) {
    EXPECT_EQ(Lines(combo), form->Drive1.Items());
    EXPECT_EQ(Lines(combo).size(), 3U);
    EXPECT_EQ(SendMessageW(combo, CB_GETCURSEL, 0, 0), 0);
    form->Drive1.SetDriveQuietly("f:\\");
    Settle();
    EXPECT_EQ(SendMessageW(combo, CB_GETCURSEL, 0, 0), 2);
    form->Drive1.SetDriveQuietly("X:\\");
    Settle();
    EXPECT_EQ(SendMessageW(combo, CB_GETCURSEL, 0, 0), -1) << "a drive that is not there is not shown as another one";
}

TEST_F(NativeFoldersTest, TheRealDrivesAreShown) {
    forms::DriveListBox all{*form, "All", real.machine().drives};
    EXPECT_FALSE(all.Items().empty());
    EXPECT_TRUE(all.Items().front().starts_with("C:")) << all.Items().front();
}

TEST_F(NativeFoldersTest, AnArrowKeyOnTheClosedListTakesEachDrive) {
    int changes = 0;
    form->Drive1.Change = [&] { ++changes; };
    SetFocus(combo);
    Key(combo, VK_DOWN);
    EXPECT_TRUE(Until([&] { return form->Drive1.Drive() == "E:\\"; }));
    Key(combo, VK_DOWN);
    EXPECT_TRUE(Until([&] { return form->Drive1.Drive() == "F:\\"; }));
    EXPECT_EQ(changes, 2);
}

TEST_F(NativeFoldersTest, MovingThroughTheOpenListTakesTheDriveAtTheEnd) {
    std::vector<std::string> chosen;
    form->Drive1.Change = [&] { chosen.push_back(form->Drive1.Drive()); };
    SetFocus(combo);
    SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
    Key(combo, VK_DOWN);
    Key(combo, VK_DOWN);
    ASSERT_TRUE(Until([&] { return SendMessageW(combo, CB_GETCURSEL, 0, 0) == 2; }));
    Settle();
    EXPECT_EQ(chosen, std::vector<std::string>{}) << "still on its way";
    Key(combo, VK_RETURN);
    ASSERT_TRUE(Until([&] { return !chosen.empty(); }));
    Settle();
    EXPECT_EQ(chosen, std::vector<std::string>{"F:\\"});
}

TEST_F(NativeFoldersTest, EscapeLeavesTheDriveAsItWas) {
    int changes = 0;
    form->Drive1.Change = [&] { ++changes; };
    SetFocus(combo);
    SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
    Key(combo, VK_DOWN);
    ASSERT_TRUE(Until([&] { return SendMessageW(combo, CB_GETCURSEL, 0, 0) == 1; }));
    Key(combo, VK_ESCAPE);
    EXPECT_TRUE(Until([&] { return SendMessageW(combo, CB_GETDROPPEDSTATE, 0, 0) == 0; }));
    EXPECT_TRUE(Until([&] { return SendMessageW(combo, CB_GETCURSEL, 0, 0) == 0; }));
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(form->Drive1.Drive(), "C:\\");
}

TEST_F(NativeFoldersTest, ADriveThatComesIsThereWhenTheListIsOpened) {
    drives.drives.push_back({"G:\\", Drive::Kind::removable, "Stick"});
    Settle();
    EXPECT_EQ(Lines(combo).size(), 3U);
    SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
    EXPECT_TRUE(Until([&] { return Lines(combo) == form->Drive1.Items() && Lines(combo).size() == 4; }));
    EXPECT_NE(SendMessageW(combo, CB_GETDROPPEDSTATE, 0, 0), 0) << "it is still open";
    drives.drives.erase(drives.drives.begin());
    SendMessageW(combo, CB_SHOWDROPDOWN, FALSE, 0);
    SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
    EXPECT_TRUE(Until([&] { return Lines(combo).size() == 3; }));
    EXPECT_EQ(SendMessageW(combo, CB_GETCURSEL, 0, 0), -1) << "the chosen drive is gone";
    EXPECT_EQ(form->Drive1.Drive(), "C:\\");
}

TEST_F(NativeFoldersTest, AChoiceMeansTheDriveThatWasShown) {
    std::vector<std::string> chosen;
    form->Drive1.Change = [&] { chosen.push_back(form->Drive1.Drive()); };
    SendMessageW(combo, CB_SETCURSEL, 2, 0);  // F, as the user sees it
    drives.drives.erase(drives.drives.begin() + 1);
    form->Drive1.Refresh();
    SendMessageW(window, WM_COMMAND, MAKEWPARAM(0, CBN_SELCHANGE), reinterpret_cast<LPARAM>(combo));
    Settle();
    EXPECT_EQ(chosen, std::vector<std::string>{"F:\\"});
    EXPECT_EQ(Lines(combo).size(), 2U);
    EXPECT_EQ(SendMessageW(combo, CB_GETCURSEL, 0, 0), 1);
}

TEST_F(NativeFoldersTest, AClickHighlightsAFolderAndOpensNothing) {
    EXPECT_EQ(Lines(folders), form->Dir1.Items());
    int clicks = 0;
    int changes = 0;
    form->Dir1.Click = [&] { ++clicks; };
    form->Dir1.Change = [&] { ++changes; };
    Click(folders, LineOf("Two"));
    ASSERT_TRUE(Until([&] { return clicks == 1; }));
    EXPECT_EQ(form->Dir1.Highlighted(), root + "\\Two");
    EXPECT_EQ(form->Dir1.Path(), root);
    EXPECT_EQ(changes, 0);
}

TEST_F(NativeFoldersTest, ADoubleClickOpensTheFolderAfterTheClick) {
    std::vector<std::string> events;
    form->Dir1.Click = [&] { events.push_back("click " + form->Dir1.Highlighted()); };
    form->Dir1.Change = [&] { events.push_back("change " + form->Dir1.Path()); };
    DoubleClick(folders, LineOf("One"));
    ASSERT_TRUE(Until([&] { return form->Dir1.Path() == root + "\\One"; }));
    Settle();
    EXPECT_EQ(events, (std::vector<std::string>{"click " + root + "\\One", "change " + root + "\\One"}));
    EXPECT_EQ(Lines(folders), form->Dir1.Items());
    EXPECT_EQ(SendMessageW(folders, LB_GETCURSEL, 0, 0), LineOf("One"));
    EXPECT_GE(LineOf("Deep"), 0);
}

TEST_F(NativeFoldersTest, BothClicksInOneGoStillOpenThatFolder) {
    int clicks = 0;
    form->Dir1.Click = [&] { ++clicks; };
    const int line = LineOf("Zwölf");
    ClickAndSay(line, {LBN_SELCHANGE, LBN_DBLCLK});
    EXPECT_EQ(clicks, 0);
    Settle();
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(form->Dir1.Path(), root + "\\Zwölf");
}

TEST_F(NativeFoldersTest, AListFilledAgainWithTheSameFoldersKeepsTheClick) {
    int clicks = 0;
    form->Dir1.Click = [&] { ++clicks; };
    form->File1.Click = [&] { form->Dir1.Refresh(); };
    const int line = LineOf("Two");
    SendMessageW(window, WM_COMMAND, MAKEWPARAM(0, LBN_SELCHANGE), reinterpret_cast<LPARAM>(files));
    ClickAndSay(line, {LBN_SELCHANGE});
    Settle();
    EXPECT_EQ(clicks, 1) << "filled again between the click and its handler";
    EXPECT_EQ(form->Dir1.Highlighted(), root + "\\Two");
    EXPECT_EQ(SendMessageW(folders, LB_GETCURSEL, 0, 0), line);
    ClickAndSay(LineOf("One"), {LBN_SELCHANGE});
    form->Dir1.Refresh();
    Settle();
    EXPECT_EQ(clicks, 2) << "filled again and shown";
    EXPECT_EQ(form->Dir1.Highlighted(), root + "\\One");
    EXPECT_EQ(SendMessageW(folders, LB_GETCURSEL, 0, 0), LineOf("One"));
}

TEST_F(NativeFoldersTest, AClickOnWhatIsGoneDoesNothing) {
    int clicks = 0;
    form->Dir1.Click = [&] { ++clicks; };
    form->File1.Click = [&] { form->Dir1.SetPath(root + "\\One"); };
    SendMessageW(window, WM_COMMAND, MAKEWPARAM(0, LBN_SELCHANGE), reinterpret_cast<LPARAM>(files));
    ClickAndSay(LineOf("Two"), {LBN_SELCHANGE, LBN_DBLCLK});
    Settle();
    EXPECT_EQ(clicks, 0) << "others came between the click and its handler";
    EXPECT_EQ(form->Dir1.Path(), root + "\\One");
    EXPECT_EQ(form->Dir1.Highlighted(), root + "\\One");
    ClickAndSay(LineOf("Deep"), {LBN_SELCHANGE, LBN_DBLCLK});
    form->Dir1.SetPath(root);
    Settle();
    EXPECT_EQ(clicks, 0) << "others came and were shown";
    EXPECT_EQ(form->Dir1.Path(), root);
    EXPECT_EQ(form->Dir1.Highlighted(), root);
}

TEST_F(NativeFoldersTest, EnterOpensTheHighlightedFolder) {
    SetActiveWindow(window);
    SetFocus(folders);
    const int line = LineOf("One");
    for (int step = form->Dir1.ListIndex(); step < line; ++step) {
        Key(folders, VK_DOWN);
    }
    ASSERT_TRUE(Until([&] { return form->Dir1.Highlighted() == root + "\\One"; }));
    Key(folders, VK_RETURN);
    EXPECT_TRUE(Until([&] { return form->Dir1.Path() == root + "\\One"; }));
}

TEST_F(NativeFoldersTest, FoldersHavePicturesBeforeTheirNames) {
    const LRESULT style = GetWindowLongPtrW(folders, GWL_STYLE);
    EXPECT_NE(style & LBS_HASSTRINGS, 0) << "screen readers read the names";
    EXPECT_GE(SendMessageW(folders, LB_GETITEMHEIGHT, 0, 0), GetSystemMetrics(SM_CYSMICON));
    SendMessageW(folders, LB_SETTOPINDEX, static_cast<WPARAM>(LineOf("One")), 0);
    form->Refresh();
    RECT place{};
    SendMessageW(folders, LB_GETITEMRECT, static_cast<WPARAM>(LineOf("One")), reinterpret_cast<LPARAM>(&place));
    std::set<COLORREF> colours;
    HDC surface = GetDC(folders);
    for (LONG x = place.left; x < place.right; ++x) {
        for (LONG y = place.top; y < place.bottom; ++y) {
            colours.insert(GetPixel(surface, x, y));
        }
    }
    ReleaseDC(folders, surface);
    const bool coloured = std::ranges::any_of(colours, [](COLORREF colour) {
        return colour != CLR_INVALID && std::abs(GetRValue(colour) - GetBValue(colour)) > 40;
    });
    EXPECT_TRUE(coloured) << "the text alone is black, white and grey";
}

TEST_F(NativeFoldersTest, SeveralFilesAreChosen) {
    EXPECT_EQ(Lines(files), (std::vector<std::string>{"a.txt", "b.txt", "c.txt", "d.txt"}));
    int clicks = 0;
    form->File1.Click = [&] { ++clicks; };
    Click(files, 0);
    ASSERT_TRUE(Until([&] { return clicks == 1; }));
    Click(files, 2, MK_SHIFT);
    Settle();
    SendMessageW(files, LB_SELITEMRANGE, TRUE, MAKELPARAM(2, 3));
    SendMessageW(window, WM_COMMAND, MAKEWPARAM(0, LBN_SELCHANGE), reinterpret_cast<LPARAM>(files));
    ASSERT_TRUE(Until([&] { return form->File1.Selected(3); }));
    EXPECT_TRUE(form->File1.Selected(2));
    form->File1.SetPath(root + "\\One");
    Settle();
    EXPECT_TRUE(Lines(files).empty());
}

}  // namespace
}  // namespace marlok::test
