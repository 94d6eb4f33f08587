#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "app/frmStartUp.h"
#include "tests/machine/InMemoryMachine.h"
#include "tests/machine/Program.h"
#include "ui/frmAbout.h"
#include "ui/frmReplace.h"
#include "ui/frmSSTab.h"
#include "ui/run/Form1.h"
#include "ui/run/Form5.h"
#include "ui/run/Form6.h"
#include "win32/Win32Machine.h"
#include "win32/machine/Wide.h"
#include "win32/views/Twips.h"
#include "win32/views/WindowText.h"

/// Every window at four resolutions and several sizes: nothing overlaps, no text is cut, nothing lies outside. The
/// program runs on an in-memory machine; the screen is the real one.
namespace marlok::test {
namespace {

/// A control as it stands on the screen.
struct Shown {
    HWND window;
    std::wstring kind;
    std::string text;
    RECT place;  ///< in the client area of the top-level window
    HWND parent;
};

std::string Describe(const Shown& shown) {
    const RECT& place = shown.place;
    return win32::FromWide(shown.kind) + " \"" + shown.text + "\" (" + std::to_string(place.left) + "," +
           std::to_string(place.top) + ")-(" + std::to_string(place.right) + "," + std::to_string(place.bottom) + ")";
}

std::wstring KindOf(HWND window) {
    std::wstring name(100, L'\0');
    name.resize(static_cast<std::size_t>(GetClassNameW(window, name.data(), static_cast<int>(name.size()))));
    return name;
}

bool Is(const Shown& shown, const wchar_t* kind) {
    return CompareStringOrdinal(shown.kind.c_str(), -1, kind, -1, TRUE) == CSTR_EQUAL;
}

DWORD StyleOf(HWND window) {
    return static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE));
}

bool IsFrame(const Shown& shown) {
    return Is(shown, WC_BUTTONW) && (StyleOf(shown.window) & BS_TYPEMASK) == BS_GROUPBOX;
}

bool IsCheckBox(const Shown& shown) {
    const DWORD type = StyleOf(shown.window) & BS_TYPEMASK;
    return Is(shown, WC_BUTTONW) && type != BS_GROUPBOX && type != BS_PUSHBUTTON && type != BS_DEFPUSHBUTTON;
}

/// The controls that other controls may lie on.
bool IsBackground(const Shown& shown) {
    return Is(shown, WC_TABCONTROLW) || IsFrame(shown);
}

SIZE TextSize(const Shown& shown, int width) {
    HDC surface = GetDC(shown.window);
    HGDIOBJ old = SelectObject(surface, reinterpret_cast<HFONT>(SendMessageW(shown.window, WM_GETFONT, 0, 0)));
    RECT area{0, 0, width, 0};
    const UINT wrap = width > 0 ? DT_WORDBREAK : DT_SINGLELINE;
    DrawTextW(surface, win32::ToWide(shown.text).c_str(), -1, &area, DT_CALCRECT | DT_NOPREFIX | wrap);
    SelectObject(surface, old);
    ReleaseDC(shown.window, surface);
    return {area.right, area.bottom};
}

class LayoutTest : public testing::TestWithParam<UINT> {
 protected:
    LayoutTest() {
        memory.Seed({{R"(C:\Data\letter.doc)", "x"}, {R"(C:\Data\Pictures\a.png)", "x"}, {R"(E:\Save\)"}});
        BackupSettings settings = program.session.Configuration();
        EXPECT_TRUE(settings.SaveLocations({R"(E:\Save)", R"(E:\Another\Backup\Location\With\A\Rather\Long\Path)"}));
        EXPECT_TRUE(settings.SaveSources(Location(R"(E:\Save)"), {R"(C:\Data)", R"(C:\Data\letter.doc)"}));
    }
    LayoutTest(const LayoutTest&) = delete;
    LayoutTest& operator=(const LayoutTest&) = delete;
    ~LayoutTest() override { program.windows.UnloadAll(); }

    HWND Find(const forms::Form& form) {
        HWND window = nullptr;
        while ((window = FindWindowExW(nullptr, window, L"MarlokWindow", nullptr)) != nullptr) {
            DWORD process = 0;
            GetWindowThreadProcessId(window, &process);
            const bool ours = process == GetCurrentProcessId() && IsWindowVisible(window) != 0;
            if (ours && win32::FromWide(win32::WindowText(window)) == form.Caption()) {
                return window;
            }
        }
        return nullptr;
    }

    /// Brings the window to this test's resolution and a size in twips.
    void Resize(HWND window, int width, int height) {
        const UINT dpi = GetParam();
        RECT place{0, 0, win32::ToPixels(width, dpi), win32::ToPixels(height, dpi)};
        AdjustWindowRectExForDpi(&place, StyleOf(window), FALSE, 0, dpi);
        OffsetRect(&place, -place.left, -place.top);
        SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place));
        real.machine().desktop.WaitForInput(0);
    }

    static std::vector<Shown> VisibleControls(HWND window) {
        std::vector<Shown> found;
        const auto add = [](HWND child, LPARAM list) -> BOOL {
            auto& all = *reinterpret_cast<std::vector<Shown>*>(list);
            HWND top = GetAncestor(child, GA_ROOT);
            if (IsWindowVisible(child) != 0 && KindOf(GetParent(child)).find(L"Marlok") == 0) {
                RECT place{};
                GetWindowRect(child, &place);
                MapWindowPoints(nullptr, top, reinterpret_cast<POINT*>(&place), 2);
                all.push_back(
                    {child, KindOf(child), win32::FromWide(win32::WindowText(child)), place, GetParent(child)});
            }
            return TRUE;
        };
        EnumChildWindows(window, add, reinterpret_cast<LPARAM>(&found));
        return found;
    }

    void ExpectGoodLayout(HWND window) {
        const std::vector<Shown> controls = VisibleControls(window);
        ASSERT_GE(controls.size(), 3U);
        ExpectNoOverlap(controls, window);
        RECT inner{};
        GetClientRect(window, &inner);
        for (const Shown& shown : controls) {
            if (shown.parent == window) {
                ExpectInside(shown, inner);
            }
            ExpectTextFits(shown);
            ExpectUsableSize(shown);
        }
    }

    static void ExpectNoOverlap(const std::vector<Shown>& controls, HWND window) {
        for (std::size_t i = 0; i < controls.size(); ++i) {
            for (std::size_t j = i + 1; j < controls.size(); ++j) {
                const Shown& a = controls[i];
                const Shown& b = controls[j];
                RECT common{};
                const bool siblings = a.parent == window && b.parent == window;
                if (siblings && !IsBackground(a) && !IsBackground(b) &&
                    IntersectRect(&common, &a.place, &b.place) != 0) {
                    ADD_FAILURE() << Describe(a) << " overlaps " << Describe(b);
                }
            }
        }
    }

    static void ExpectInside(const Shown& shown, const RECT& inner) {
        EXPECT_TRUE(shown.place.left >= inner.left && shown.place.top >= inner.top &&
                    shown.place.right <= inner.right && shown.place.bottom <= inner.bottom)
            << Describe(shown) << " is outside " << inner.right << " x " << inner.bottom;
    }

    void ExpectTextFits(const Shown& shown) const {
        const int width = shown.place.right - shown.place.left;
        const int height = shown.place.bottom - shown.place.top;
        if (Is(shown, WC_STATICW) && !shown.text.empty()) {
            const SIZE line = TextSize(shown, 0);
            const SIZE wrapped = TextSize(shown, width);
            EXPECT_TRUE(line.cy <= height && (line.cx <= width || (wrapped.cy <= height && wrapped.cx <= width)))
                << Describe(shown) << " needs " << line.cx << " x " << line.cy << " or " << wrapped.cy << " high";
        } else if (IsFrame(shown)) {
            EXPECT_LE(TextSize(shown, 0).cx + Scaled(20), width) << Describe(shown);
        } else if (IsCheckBox(shown)) {
            const int room = width - Scaled(18);  // without the box and the gap behind it
            const SIZE line = TextSize(shown, 0);
            const SIZE wrapped = TextSize(shown, room);
            EXPECT_TRUE(line.cx <= room || (wrapped.cy <= height && wrapped.cx <= room)) << Describe(shown);
        } else if (Is(shown, WC_BUTTONW)) {
            const SIZE line = TextSize(shown, 0);
            EXPECT_TRUE(line.cx + Scaled(12) <= width && line.cy + Scaled(8) <= height)
                << Describe(shown) << " needs " << line.cx << " x " << line.cy;
        }
    }

    /// A list that cannot show three lines is of no use.
    void ExpectUsableSize(const Shown& shown) const {
        if (Is(shown, WC_LISTBOXW)) {
            const auto line = static_cast<int>(SendMessageW(shown.window, LB_GETITEMHEIGHT, 0, 0));
            EXPECT_GE(shown.place.bottom - shown.place.top, 3 * line) << Describe(shown);
            EXPECT_GE(shown.place.right - shown.place.left, Scaled(150)) << Describe(shown);
        }
    }

    [[nodiscard]] static int Scaled(int pixels) { return MulDiv(pixels, static_cast<int>(GetParam()), 96); }

    /// At the window's own size, at the least and at a large one.
    void ExpectGoodLayoutAtAllSizes(forms::Form& form) {
        HWND window = Find(form);
        ASSERT_NE(window, nullptr) << form.Name();
        const int width = form.Width();
        const int height = form.Height();
        struct Size {
            int width;
            int height;
        };
        const int leastWidth = form.LeastWidth() > 0 ? form.LeastWidth() : width;
        const int leastHeight = form.LeastHeight() > 0 ? form.LeastHeight() : height;
        for (const Size size : {Size{width, height}, Size{leastWidth, leastHeight}, Size{24000, 15000}}) {
            SCOPED_TRACE(form.Name() + " " + std::to_string(size.width) + " x " + std::to_string(size.height));
            Resize(window, size.width, size.height);
            ExpectGoodLayout(window);
        }
    }

    InMemoryMachine memory;
    win32::Win32Machine real;
    Machine mixed{memory.registry,      memory.files,   memory.drives, memory.shell,  real.machine().desktop,
                  real.machine().clock, memory.process, memory.system, memory.browser};
    Program program{mixed, &real.views()};
};

TEST_P(LayoutTest, TheStartUpWindow) {
    auto& form = program.windows.Load<app::frmStartUp>(program.session);
    form.Label3.Caption = "Backup Locations";
    form.Show();
    ExpectGoodLayoutAtAllSizes(form);
}

TEST_P(LayoutTest, TheOptionsTab) {
    auto& form = program.windows.Load<ui::frmSSTab>(program.session);
    form.Show();
    ExpectGoodLayoutAtAllSizes(form);
    form.Command8_Click();
    form.List1.UserSelected(3, {2, 3});
    ExpectGoodLayoutAtAllSizes(form);
}

TEST_P(LayoutTest, TheOptionsTabBeforeAnythingIsConfigured) {
    ASSERT_TRUE(program.session.Configuration().SaveLocations({}));
    auto& form = program.windows.Load<ui::frmSSTab>(program.session);
    form.Show();
    ExpectGoodLayoutAtAllSizes(form);
}

TEST_P(LayoutTest, TheBackupFolderTab) {
    auto& form = program.windows.Load<ui::frmSSTab>(program.session);
    form.SSTab1.SetTab(ui::tab::backupFolder);
    form.Show();
    ExpectGoodLayoutAtAllSizes(form);
}

TEST_P(LayoutTest, TheFilesTab) {
    auto& form = program.windows.Load<ui::frmSSTab>(program.session);
    form.SSTab1.SetTab(ui::tab::filesToBackup);
    form.Show();
    ExpectGoodLayoutAtAllSizes(form);
    form.Command4.Caption = "Add File To List";
    ExpectGoodLayout(Find(form));
}

TEST_P(LayoutTest, TheReviewTab) {
    auto& form = program.windows.Load<ui::frmSSTab>(program.session);
    form.SSTab1.SetTab(ui::tab::reviewSaved);
    form.Show();
    ExpectGoodLayoutAtAllSizes(form);
    form.Command13.Caption = "Replace Selected Files";
    form.Label5.Caption = "List of Original Path Log";
    form.Text1.Text = "1,234,567";
    form.Text2.Text = "1234.50  Seconds";
    ExpectGoodLayout(Find(form));
}

TEST_P(LayoutTest, TheProgressWindow) {
    auto& form = program.windows.Load<Form5>(program.session.machine, program.session.gAllFiles);
    form.ShowStatus("Now Writing Log File, Please Wait!");
    ExpectGoodLayoutAtAllSizes(form);
    form.ShowStatus("ShortCut to Backup Log Being Created !");
    ExpectGoodLayout(Find(form));
}

TEST_P(LayoutTest, TheRunWindowWithFailures) {
    auto& form = program.windows.Load<Form1>(program.session, std::vector<Location>{}, [] {});
    program.windows.Find<Form5>()->Hide();
    form.Label1.Caption = "Total files copied was 1234567";
    form.Label2.Caption = "Backup Has Been Completed";
    form.Label3.Caption = "1234 Failures, See \"Backup Error Log.txt\" In The Program's Folder";
    form.Label3.Visible = true;
    form.List2.Visible = true;
    ExpectGoodLayoutAtAllSizes(form);
}

TEST_P(LayoutTest, TheUnattendedRunsResult) {
    auto& form = program.windows.Load<Form6>(program.session);
    form.List2.Visible = true;
    form.Show();
    ExpectGoodLayoutAtAllSizes(form);
}

TEST_P(LayoutTest, TheReplacementWindow) {
    auto& form = program.windows.Load<ui::frmReplace>(mixed, [] {});
    memory.Seed({{R"(E:\Save\Data\a.doc)", "a"}, {R"(C:\Program Files\Marlok\Save.txt)", "C:\\Data\\a.doc\r\n"}});
    memory.Lock(R"(E:\Save\Data\a.doc)");
    form.Run(Location(R"(E:\Save)"), {R"(E:\Save\Data\a.doc)"});
    form.Timer1_Timer();
    ASSERT_TRUE(form.Label4.Visible) << "one file was not replaced";
    ExpectGoodLayoutAtAllSizes(form);
}

TEST_P(LayoutTest, TheAboutWindow) {
    auto& form = program.windows.Load<ui::frmAbout>(mixed, program.windows.Load<ui::frmSSTab>(program.session));
    form.Show();
    ExpectGoodLayoutAtAllSizes(form);
}

INSTANTIATE_TEST_SUITE_P(Resolutions, LayoutTest, testing::Values(96U, 120U, 144U, 192U),
                         [](const auto& resolution) { return std::to_string(resolution.param) + "Dpi"; });

}  // namespace
}  // namespace marlok::test
