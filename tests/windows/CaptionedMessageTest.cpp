#include "win32/views/CaptionedMessage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/windows/DialogUser.h"
#include "win32/Win32Machine.h"
#include "win32/machine/Wide.h"
#include "win32/views/WindowText.h"

namespace marlok::test {
namespace {

/// A button as it was seen on the screen.
struct SeenButton {
    int id;
    std::string caption;
    RECT place;     ///< in the box
    int textWidth;  ///< of the caption in the button's font, in pixels
};

int TextWidth(HWND window) {
    HDC context = GetDC(window);
    HGDIOBJ before = SelectObject(context, reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)));
    RECT text{};
    DrawTextW(context, win32::WindowText(window).c_str(), -1, &text, DT_CALCRECT | DT_SINGLELINE);
    SelectObject(context, before);
    ReleaseDC(window, context);
    return text.right - text.left;
}

/// The buttons from left to right.
std::vector<SeenButton> ButtonsIn(HWND box) {
    std::vector<SeenButton> seen;
    for (const int id : {button::ok, button::cancel, button::abort, button::retry, button::ignore}) {
        HWND window = GetDlgItem(box, id);
        if (window == nullptr) {
            continue;
        }
        RECT place{};
        GetWindowRect(window, &place);
        MapWindowPoints(nullptr, box, reinterpret_cast<POINT*>(&place), 2);
        seen.push_back({id, win32::FromWide(win32::WindowText(window)), place, TextWidth(window)});
    }
    std::sort(seen.begin(), seen.end(),
              [](const SeenButton& one, const SeenButton& other) { return one.place.left < other.place.left; });
    return seen;
}

std::vector<std::string> Captions(const std::vector<SeenButton>& buttons) {
    std::vector<std::string> captions;
    captions.reserve(buttons.size());
    for (const SeenButton& one : buttons) {
        captions.push_back(one.caption);
    }
    return captions;
}

class CaptionedMessageTest : public ::testing::Test {
 protected:
    static constexpr std::uint32_t threeButtons = messagestyle::abortRetryIgnore | messagestyle::information;

    /// What the user sees of a box before he presses `pressed`.
    DialogUser::Act LookAndPress(int pressed) {
        return [this, pressed](HWND box) {
            seen = ButtonsIn(box);
            GetClientRect(box, &client);
            GetWindowRect(box, &outer);
            hasIcon = false;
            for (HWND child = GetWindow(box, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
                hasIcon = hasIcon || reinterpret_cast<HICON>(SendMessageW(child, STM_GETICON, 0, 0)) ==
                                         LoadIconW(nullptr, IDI_INFORMATION);
            }
            Press(box, pressed);
        };
    }

    int ShowOrdinary() {
        const DialogUser user(title, LookAndPress(button::retry));
        return desktop.ShowMessage("Which?", threeButtons, title);
    }

    int ShowCaptioned(const std::vector<Desktop::ButtonCaption>& captions, int pressed) {
        const DialogUser user(title, LookAndPress(pressed));
        return desktop.ShowMessageWithCaptions("Which?", threeButtons, title, captions);
    }

    void ExpectOrdinaryCaptions(const std::vector<std::string>& ordinary) {
        EXPECT_EQ(ShowOrdinary(), button::retry);
        EXPECT_EQ(Captions(seen), ordinary);
    }

    void ExpectEverythingFits() const {
        ASSERT_FALSE(seen.empty());
        const LONG width = seen.front().place.right - seen.front().place.left;
        LONG free = 0;  // up to here, from the left, the box is taken
        for (const SeenButton& one : seen) {
            EXPECT_EQ(one.place.right - one.place.left, width) << one.caption;
            EXPECT_GE(width, one.textWidth + 8) << one.caption;
            EXPECT_GT(one.place.left, free) << one.caption;
            free = one.place.right;
        }
        EXPECT_LT(free, client.right);
        RECT work{};
        SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
        EXPECT_GE(outer.left, work.left);
        EXPECT_LE(outer.right, work.right);
    }

    win32::Win32Machine real;
    Desktop& desktop = real.machine().desktop;
    const std::string title = "Marlok Captions " + std::to_string(GetCurrentProcessId()) + " " +
                              ::testing::UnitTest::GetInstance()->current_test_info()->name();
    const std::vector<Desktop::ButtonCaption> entryCaptions = {
        {button::abort, "Only Entry"}, {button::retry, "File Also"}, {button::ignore, "Cancel"}};

    std::vector<SeenButton> seen;
    RECT client{};
    RECT outer{};
    bool hasIcon = false;
};

TEST_F(CaptionedMessageTest, TheCaptionsStandInTheOrderOfTheButtonsAndFit) {
    EXPECT_EQ(ShowCaptioned(entryCaptions, button::retry), button::retry);
    EXPECT_EQ(Captions(seen), (std::vector<std::string>{"Only Entry", "File Also", "Cancel"}));
    EXPECT_TRUE(hasIcon) << "the style is that of the caller";
    ExpectEverythingFits();
}

TEST_F(CaptionedMessageTest, EveryButtonKeepsItsNumber) {
    EXPECT_EQ(ShowCaptioned(entryCaptions, button::abort), 3);
    EXPECT_EQ(ShowCaptioned(entryCaptions, button::retry), 4);
    EXPECT_EQ(ShowCaptioned(entryCaptions, button::ignore), 5);
}

TEST_F(CaptionedMessageTest, LongCaptionsWidenTheButtonsAndTheBox) {
    ASSERT_EQ(ShowCaptioned(entryCaptions, button::abort), button::abort);
    const LONG before = outer.right - outer.left;
    EXPECT_EQ(ShowCaptioned({{button::abort, "Only the entry in this list"},
                             {button::retry, "The file on the disk as well, für immer"},
                             {button::ignore, "No"}},
                            button::ignore),
              button::ignore);
    EXPECT_EQ(Captions(seen).at(1), "The file on the disk as well, für immer");
    EXPECT_GT(outer.right - outer.left, before);
    ExpectEverythingFits();
}

TEST_F(CaptionedMessageTest, ButtonsThatAreNotNamedKeepTheirCaptions) {
    ASSERT_EQ(ShowOrdinary(), button::retry);
    std::vector<std::string> expected = Captions(seen);
    expected.at(2) = "Never";
    EXPECT_EQ(ShowCaptioned({{button::ignore, "Never"}}, button::ignore), button::ignore);
    EXPECT_EQ(Captions(seen), expected);
}

TEST_F(CaptionedMessageTest, TheNextOrdinaryBoxHasTheCaptionsOfTheSystem) {
    ASSERT_EQ(ShowOrdinary(), button::retry);
    const std::vector<std::string> ordinary = Captions(seen);
    ASSERT_EQ(ShowCaptioned(entryCaptions, button::abort), button::abort);
    ASSERT_NE(Captions(seen), ordinary);
    ExpectOrdinaryCaptions(ordinary);
}

TEST_F(CaptionedMessageTest, ABoxThatCannotBeShownLeavesNoCaptionsBehind) {
    ASSERT_EQ(ShowOrdinary(), button::retry);
    const std::vector<std::string> ordinary = Captions(seen);
    HWND gone = CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(DestroyWindow(gone), 0);
    EXPECT_LE(win32::ShowCaptionedMessage(gone, "Which?", threeButtons, title, entryCaptions), 0);
    ExpectOrdinaryCaptions(ordinary);
    EXPECT_EQ(ShowCaptioned(entryCaptions, button::ignore), button::ignore) << "the next one has its turn";
    EXPECT_EQ(Captions(seen).front(), "Only Entry");
}

}  // namespace
}  // namespace marlok::test
