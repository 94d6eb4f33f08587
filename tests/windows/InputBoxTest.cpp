#include "win32/views/InputBox.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/windows/DialogUser.h"
#include "tests/windows/Waiting.h"
#include "win32/Win32Machine.h"
#include "win32/machine/Handles.h"
#include "win32/machine/Wide.h"

namespace marlok::test {
namespace {

bool Overlap(const RECT& one, const RECT& other) {
    RECT common{};
    return IntersectRect(&common, &one, &other) != 0;
}

TEST(InputBoxLayout, NothingOverlapsOrIsCutAtAnyResolution) {
    for (const UINT dpi : {96U, 144U, 192U}) {
        for (const int lines : {1, 2, 7}) {
            const int lineHeight = MulDiv(15, static_cast<int>(dpi), 96);
            const win32::InputBoxLayout layout = win32::LayOutInputBox(dpi, lines * lineHeight, lineHeight);
            const std::vector<RECT> all = {layout.prompt, layout.field, layout.ok, layout.cancel};
            for (std::size_t index = 0; index < all.size(); ++index) {
                const RECT& one = all[index];
                EXPECT_GT(one.left, 0);
                EXPECT_GT(one.top, 0);
                EXPECT_LT(one.right, layout.client.cx);
                EXPECT_LT(one.bottom, layout.client.cy);
                EXPECT_GE(one.bottom - one.top, lineHeight);
                for (std::size_t other = index + 1; other < all.size(); ++other) {
                    EXPECT_FALSE(Overlap(one, all[other])) << dpi << " " << index << " " << other;
                }
            }
            EXPECT_EQ(layout.prompt.right - layout.prompt.left, win32::InputBoxPromptWidth(dpi));
            EXPECT_EQ(layout.prompt.bottom - layout.prompt.top, lines * lineHeight);
            EXPECT_GT(layout.field.bottom - layout.field.top, lineHeight) << "the line has a frame around it";
        }
    }
}

TEST(InputBoxLayout, ALargeFontMakesLargeButtons) {
    const win32::InputBoxLayout layout = win32::LayOutInputBox(96, 40, 40);
    EXPECT_EQ(layout.ok.right - layout.ok.left, 160);
    EXPECT_GT(layout.ok.bottom - layout.ok.top, 40);
}

class InputBoxTest : public ::testing::Test {
 protected:
    /// Asks a user who does `act` in the box.
    std::string Ask(const DialogUser::Act& act, int left = 1500, int top = 1500) {
        DialogUser user(title, [this, &act](HWND box) {
            GetWindowRect(box, &place);
            act(box);
        });
        std::string answer = desktop.AskText(prompt, title, left, top);
        seen = user.SeenText();
        return answer;
    }

    static HWND Field(HWND box) { return GetDlgItem(box, win32::inputBoxFieldId); }

    /// Types into the field, key by key.
    static void Type(HWND box, const std::string& text) {
        for (const wchar_t unit : win32::ToWide(text)) {
            PostMessageW(Field(box), WM_CHAR, unit, 1);
        }
    }

    static void PressKey(HWND box, WPARAM key) { PostMessageW(Field(box), WM_KEYDOWN, key, 1); }

    static DialogUser::Act TypeAndPress(const std::string& text, WPARAM key) {
        return [text, key](HWND box) {
            Type(box, text);
            PressKey(box, key);
        };
    }

    win32::Win32Machine real;
    Desktop& desktop = real.machine().desktop;
    const std::string prompt = "Name of the new folder für A && B & C:";
    const std::string title = "Marlok Input " + std::to_string(GetCurrentProcessId()) + " " +
                              ::testing::UnitTest::GetInstance()->current_test_info()->name();
    RECT place{};
    std::string seen;
};

TEST_F(InputBoxTest, TypedTextComesBackWithEnter) {
    EXPECT_EQ(Ask(TypeAndPress("  Fotos Zürich 日本 ", VK_RETURN)), "  Fotos Zürich 日本 ");
    EXPECT_EQ(seen, prompt + "||OK|Cancel|") << "the prompt names the empty field behind it";
}

TEST_F(InputBoxTest, TheOkButtonTakesTheText) {
    EXPECT_EQ(Ask([](HWND box) {
                  Type(box, "one");
                  // Typed keys are taken before the button is looked at: both wait in the same queue.
                  Press(box, IDOK);
              }),
              "one");
}

TEST_F(InputBoxTest, NothingTypedIsAnEmptyText) {
    EXPECT_EQ(Ask(TypeAndPress("", VK_RETURN)), "");
    EXPECT_NE(seen, "") << "the box was there";
}

TEST_F(InputBoxTest, EveryWayToCancelGivesNothing) {
    EXPECT_EQ(Ask(TypeAndPress("typed", VK_ESCAPE)), "");
    EXPECT_NE(seen, "");
    EXPECT_EQ(Ask([](HWND box) {
                  Type(box, "typed");
                  Press(box, IDCANCEL);
              }),
              "");
    EXPECT_NE(seen, "");
    EXPECT_EQ(Ask([](HWND box) {
                  Type(box, "typed");
                  PostMessageW(box, WM_SYSCOMMAND, SC_CLOSE, 0);
              }),
              "");
    EXPECT_NE(seen, "");
}

TEST_F(InputBoxTest, EnterOnTheCancelButtonCancels) {
    EXPECT_EQ(Ask([](HWND box) {
                  Type(box, "typed");
                  PressKey(box, VK_TAB);
                  EXPECT_TRUE(WaitUntil([box] {
                      return (SendMessageW(GetDlgItem(box, IDOK), WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON) != 0;
                  }));
                  PostMessageW(GetDlgItem(box, IDOK), WM_KEYDOWN, VK_TAB, 1);
                  EXPECT_TRUE(WaitUntil([box] {
                      return (SendMessageW(GetDlgItem(box, IDCANCEL), WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON) != 0;
                  }));
                  PostMessageW(GetDlgItem(box, IDCANCEL), WM_KEYDOWN, VK_RETURN, 1);
              }),
              "");
    EXPECT_NE(seen, "");
}

TEST_F(InputBoxTest, ItStandsWhereItIsAskedTo) {
    const UINT dpi = GetDpiForSystem();
    EXPECT_EQ(Ask(TypeAndPress("x", VK_RETURN), 1440, 2880), "x");
    EXPECT_EQ(place.left, static_cast<LONG>(dpi));
    EXPECT_EQ(place.top, static_cast<LONG>(2 * dpi));
}

TEST_F(InputBoxTest, ItLiesWhollyOnTheWorkArea) {
    RECT work{};
    ASSERT_NE(SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0), 0);
    ASSERT_EQ(Ask(TypeAndPress("x", VK_RETURN), 500000, 500000), "x");
    EXPECT_EQ(place.right, work.right);
    EXPECT_EQ(place.bottom, work.bottom);
    ASSERT_EQ(Ask(TypeAndPress("x", VK_RETURN), -500000, -500000), "x");
    EXPECT_EQ(place.left, work.left);
    EXPECT_EQ(place.top, work.top);
}

TEST_F(InputBoxTest, ALongPromptIsShownInLinesAboveTheField) {
    RECT promptPlace{};
    RECT fieldPlace{};
    std::string text;
    for (int word = 0; word < 60; ++word) {
        text += "word" + std::to_string(word) + " ";
    }
    {
        const DialogUser user(title, [&](HWND box) {
            GetWindowRect(GetDlgItem(box, win32::inputBoxPromptId), &promptPlace);
            GetWindowRect(Field(box), &fieldPlace);
            Press(box, IDCANCEL);
        });
        EXPECT_EQ(desktop.AskText(text, title, 0, 0), "");
    }
    EXPECT_GT(promptPlace.bottom - promptPlace.top, 2 * (fieldPlace.bottom - fieldPlace.top));
    EXPECT_LE(promptPlace.bottom, fieldPlace.top);
}

TEST_F(InputBoxTest, TextBeyondTheLimitIsCutBetweenCharacters) {
    const auto limit = static_cast<std::size_t>(win32::inputBoxLimit);
    for (const std::wstring& tail : {std::wstring(L"xyz"), std::wstring(L"\xD83D\xDE00z")}) {
        const std::wstring text = std::wstring(limit - 1, L'a') + tail;
        const std::string answer = Ask([&text](HWND box) {
            SendMessageW(Field(box), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
            Press(box, IDOK);
        });
        EXPECT_EQ(answer, std::string(limit - 1, 'a') + (tail == L"xyz" ? "x" : ""));
    }
}

TEST_F(InputBoxTest, TheFieldItselfTakesNoMoreThanTheLimit) {
    LRESULT limit = 0;
    EXPECT_EQ(Ask([&limit](HWND box) {
                  limit = SendMessageW(Field(box), EM_GETLIMITTEXT, 0, 0);
                  Press(box, IDCANCEL);
              }),
              "");
    EXPECT_EQ(limit, win32::inputBoxLimit);
}

/// Windows of the program beside the box.
class InputBoxOwnerTest : public InputBoxTest {
 protected:
    win32::WindowHandle Make() {
        return win32::WindowHandle(CreateWindowExW(0, L"#32770", L"Marlok owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0,
                                                   0, 300, 200, nullptr, nullptr, nullptr, nullptr));
    }

    const win32::WindowHandle owner = Make();
    const win32::WindowHandle other = Make();
    HWND edit =
        CreateWindowExW(0, L"Edit", L"", WS_CHILD | WS_VISIBLE, 0, 0, 100, 20, owner.Get(), nullptr, nullptr, nullptr);
};

TEST_F(InputBoxOwnerTest, OtherWindowsTakeNoInputMeanwhileAndTheKeyboardGoesBack) {
    SetActiveWindow(owner.Get());
    SetFocus(edit);
    ASSERT_EQ(GetFocus(), edit);
    bool ownerEnabled = true;
    bool otherEnabled = true;
    EXPECT_EQ(Ask([&](HWND box) {
                  ownerEnabled = IsWindowEnabled(owner.Get()) != 0;
                  otherEnabled = IsWindowEnabled(other.Get()) != 0;
                  Type(box, "a");
                  PressKey(box, VK_RETURN);
              }),
              "a");
    EXPECT_FALSE(ownerEnabled);
    EXPECT_FALSE(otherEnabled);
    EXPECT_NE(IsWindowEnabled(owner.Get()), 0);
    EXPECT_NE(IsWindowEnabled(other.Get()), 0);
    EXPECT_EQ(GetActiveWindow(), owner.Get());
    EXPECT_EQ(GetFocus(), edit);
}

TEST_F(InputBoxTest, ABoxThatCannotBeShownIsAnError) {
    HWND gone = CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(DestroyWindow(gone), 0);
    EXPECT_THROW(static_cast<void>(win32::AskInputBox(gone, {L"?", L"?", {0, 0}})), std::system_error);
}

}  // namespace
}  // namespace marlok::test
