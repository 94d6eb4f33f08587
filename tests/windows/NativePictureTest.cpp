#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <set>

#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/Windows.h"
#include "tests/windows/GifBytes.h"
#include "tests/windows/Waiting.h"
#include "win32/Win32Machine.h"
#include "win32/machine/Wide.h"
#include "win32/views/WindowText.h"

namespace marlok::test {
namespace {

constexpr COLORREF pureRed = RGB(255, 0, 0);
constexpr COLORREF pureGreen = RGB(0, 255, 0);
constexpr COLORREF pureBlue = RGB(0, 0, 255);

/// What an animation is waited for at most.
constexpr auto patience = std::chrono::seconds(10);

class PictureForm : public forms::Form {
 public:
    PictureForm(forms::Windows& windows, const std::string& caption) : Form(windows, "Pictures", caption) {
        Place(1500, 1500, 9000, 6000);
        Image1.MoveTo(0, 0, 3000, 3000);
        Inside.MoveTo(150, 150, 1500, 450);
        WebBrowser1.MoveTo(4500, 0, 3000, 1500);
        Image1.BackColor = forms::Rgb(0, 0, 255);
        WebBrowser1.BackColor = forms::Rgb(0, 0, 255);
        Inside.SetContainer(&Image1);
    }

    forms::PictureBox Image1{*this, "Image1"};
    forms::CommandButton Inside{*this, "Inside", "Inside"};
    forms::WebView WebBrowser1{*this, "WebBrowser1"};
};

class NativePictureTest : public ::testing::Test {
 protected:
    void TearDown() override {
        std::error_code ignored;  // what stays behind is in the folder for temporary files
        std::filesystem::remove(file, ignored);
    }

    /// Shows the form; the file plays in its web view when there are frames.
    void Show(const std::vector<GifFrame>& frames = {}) {
        form = &windows.Load<PictureForm>(caption);
        if (!frames.empty()) {
            std::ofstream(file, std::ios::binary) << GifBytes(4, 4, frames);
            form->WebBrowser1.Navigate2(file.string());
        }
        form->Show();
        window = FindWindowW(L"MarlokWindow", win32::ToWide(caption).c_str());
        ASSERT_NE(window, nullptr);
        for (HWND area = nullptr; (area = FindWindowExW(window, area, L"MarlokArea", nullptr)) != nullptr;) {
            RECT place{};
            GetWindowRect(area, &place);
            MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
            (place.left == 0 ? image : view) = area;
        }
        ASSERT_NE(image, nullptr);
        ASSERT_NE(view, nullptr);
        form->Refresh();
    }

    /// The colour of a pixel of a window, counted in hundredths of its size.
    static COLORREF Pixel(HWND area, int across, int down) {
        RECT size{};
        GetClientRect(area, &size);
        HDC surface = GetDC(area);
        const COLORREF colour = GetPixel(surface, size.right * across / 100, size.bottom * down / 100);
        ReleaseDC(area, surface);
        return colour;
    }

    /// The colours that the middle of the web view shows one after the other while `turn` is called: until there are
    /// `enough`, and no longer than `limit`.
    std::vector<COLORREF> Colours(std::size_t enough, std::chrono::milliseconds limit,
                                  const std::function<void()>& turn) const {
        std::vector<COLORREF> seen;
        const auto look = [&] {
            const COLORREF now = Pixel(view, 50, 50);
            if (seen.empty() || seen.back() != now) {
                seen.push_back(now);
            }
            return seen.size() >= enough;
        };
        static_cast<void>(WaitUntil(look, limit, turn));  // what was seen says whether it was enough
        return seen;
    }

    static std::set<HWND> TopWindows() {
        std::set<HWND> all;
        EnumWindows(
            [](HWND found, LPARAM data) -> BOOL {
                if (IsWindowVisible(found) != 0) {
                    reinterpret_cast<std::set<HWND>*>(data)->insert(found);
                }
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&all));
        return all;
    }

    const std::filesystem::path file = std::filesystem::temp_directory_path() /
                                       ("marlok-" + std::to_string(GetCurrentProcessId()) + "-" +
                                        ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".gif");
    win32::Win32Machine real;
    const std::string caption = "Pictures " + std::to_string(GetCurrentProcessId()) + " " +
                                ::testing::UnitTest::GetInstance()->current_test_info()->name();
    forms::Windows windows{real.machine().desktop, real.machine().clock, &real.views()};
    PictureForm* form = nullptr;
    HWND window = nullptr;
    HWND image = nullptr;
    HWND view = nullptr;
};

TEST_F(NativePictureTest, AnAreaHasItsColour) {
    Show();
    EXPECT_EQ(Pixel(image, 90, 90), pureBlue);
    form->Image1.BackColor = forms::Rgb(255, 0, 0);
    form->Refresh();
    EXPECT_EQ(Pixel(image, 90, 90), pureRed);
    form->Image1.BackColor = forms::systemColour;
    form->Refresh();
    EXPECT_EQ(Pixel(image, 90, 90), GetSysColor(COLOR_BTNFACE));
}

TEST_F(NativePictureTest, TheProgramsIconIsDrawnAsLargeAsFits) {
    Show();
    form->Inside.Visible = false;
    form->Image1.Picture = "program";
    form->Refresh();
    std::set<COLORREF> colours;
    int drawn = 0;
    for (int across = 0; across < 100; across += 2) {
        for (int down = 0; down < 100; down += 2) {
            const COLORREF colour = Pixel(image, across, down);
            colours.insert(colour);
            drawn += colour != pureBlue ? 1 : 0;
        }
    }
    EXPECT_EQ(Pixel(image, 0, 0), pureBlue) << "the icon's corner is transparent";
    EXPECT_GT(drawn, 500) << "of 2500 points";
    EXPECT_GT(colours.size(), 20U) << "soft edges have many shades";
    form->Image1.Picture = "no such picture";
    form->Refresh();
    EXPECT_EQ(Pixel(image, 50, 50), pureBlue);
}

TEST_F(NativePictureTest, ControlsLieInThePicture) {
    Show();
    HWND button = FindWindowExW(image, nullptr, WC_BUTTONW, L"Inside");
    ASSERT_NE(button, nullptr);
    EXPECT_NE(Pixel(image, 20, 12), pureBlue) << "the picture is not painted over its control";
    int pressed = 0;
    form->Inside.Click = [&] { ++pressed; };
    PostMessageW(button, BM_CLICK, 0, 0);
    EXPECT_TRUE(WaitUntil([&] { return pressed == 1; }, std::chrono::seconds(10),
                          [this] { real.machine().desktop.WaitForInput(20); }));
}

TEST_F(NativePictureTest, AnAnimationPlaysInTheWebView) {
    Show({PlainFrame(0, 0, 4, 4, red), PlainFrame(0, 0, 4, 4, green)});
    EXPECT_EQ(Pixel(view, 50, 50), pureRed) << "the first frame is there at once";
    EXPECT_EQ(Pixel(view, 10, 50), pureBlue) << "the picture is square, the control is not";
    const auto seen = Colours(4, patience, [this] { real.machine().desktop.WaitForInput(20); });
    EXPECT_GE(seen.size(), 4U);
    for (const COLORREF colour : seen) {
        EXPECT_TRUE(colour == pureRed || colour == pureGreen) << std::hex << colour;
    }
}

TEST_F(NativePictureTest, AnAnimationPlaysWhileTheProgramIsBusy) {
    Show({PlainFrame(0, 0, 4, 4, red), PlainFrame(0, 0, 4, 4, green)});
    int pressed = 0;
    form->Inside.Click = [&] { ++pressed; };
    PostMessageW(FindWindowExW(image, nullptr, WC_BUTTONW, L"Inside"), BM_CLICK, 0, 0);
    const auto seen = Colours(4, patience, [this] {
        real.machine().desktop.PaintPending();
        Sleep(1);
    });
    EXPECT_GE(seen.size(), 4U);
    EXPECT_EQ(pressed, 0) << "a busy program takes no input";
}

TEST_F(NativePictureTest, StoppingLeavesTheFrameThatIsThere) {
    Show({PlainFrame(0, 0, 4, 4, red), PlainFrame(0, 0, 4, 4, green)});
    form->WebBrowser1.Stop();
    const auto turn = [this] { real.machine().desktop.WaitForInput(20); };
    // Long enough for six frames.
    const auto seen = Colours(2, std::chrono::milliseconds(600), turn);
    EXPECT_EQ(seen.size(), 1U);
    EXPECT_NE(seen.front(), pureBlue);
    form->WebBrowser1.Playing = true;
    EXPECT_GE(Colours(2, patience, turn).size(), 2U) << "it plays again";
}

TEST_F(NativePictureTest, AnotherFileTakesItsPlace) {
    Show({PlainFrame(0, 0, 4, 4, red), PlainFrame(0, 0, 4, 4, red)});
    const std::filesystem::path other = file.string() + ".other.gif";
    std::ofstream(other, std::ios::binary) << GifBytes(4, 4, {PlainFrame(0, 0, 4, 4, green)});
    form->WebBrowser1.Navigate2(other.string());
    form->Refresh();
    EXPECT_EQ(Pixel(view, 50, 50), pureGreen);
    form->WebBrowser1.Navigate2("C:\\no such file.gif");
    form->Refresh();
    EXPECT_EQ(Pixel(view, 50, 50), pureBlue);
    std::filesystem::remove(other);
}

TEST_F(NativePictureTest, TheWebViewComesQuicklyAndOpensNothingElse) {
    std::vector<GifFrame> frames;
    frames.reserve(30);
    for (int frame = 0; frame < 30; ++frame) {
        frames.push_back(PlainFrame(0, 0, 4, 4, frame % 2 == 0 ? red : green));
    }
    const auto before = TopWindows();
    const auto start = std::chrono::steady_clock::now();
    Show(frames);
    const auto took = std::chrono::steady_clock::now() - start;
    EXPECT_LT(took, std::chrono::seconds(3));
    RecordProperty("milliseconds",
                   static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(took).count()));
    EXPECT_GE(Colours(4, patience, [this] { real.machine().desktop.WaitForInput(20); }).size(), 4U) << "it plays";
    for (HWND found : TopWindows()) {
        EXPECT_TRUE(before.contains(found) || found == window) << win32::FromWide(win32::WindowText(found));
    }
}

}  // namespace
}  // namespace marlok::test
