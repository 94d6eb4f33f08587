#include "win32/views/Win32Desktop.h"

#include <windows.h>

#include <array>
#include <utility>
#include <vector>

#include "win32/machine/Wide.h"
#include "win32/views/CaptionedMessage.h"
#include "win32/views/InputBox.h"
#include "win32/views/TimedMessage.h"
#include "win32/views/Twips.h"

namespace marlok::win32 {

namespace {

/// A window that never says it has painted would be offered for painting for ever.
constexpr int paintLimit = 1000;

/// Keeps all other windows of the program from taking input while a message box is open; the box itself disables only
/// its owner.
class OtherWindowsDisabled {
 public:
    explicit OtherWindowsDisabled(HWND owner) : owner_(owner) {
        EnumThreadWindows(GetCurrentThreadId(), &Disable, reinterpret_cast<LPARAM>(this));
    }
    OtherWindowsDisabled(const OtherWindowsDisabled&) = delete;
    OtherWindowsDisabled& operator=(const OtherWindowsDisabled&) = delete;
    ~OtherWindowsDisabled() {
        for (HWND window : disabled_) {
            EnableWindow(window, TRUE);
        }
    }

 private:
    static BOOL CALLBACK Disable(HWND window, LPARAM data) {
        auto& self = *reinterpret_cast<OtherWindowsDisabled*>(data);
        if (window != self.owner_ && IsWindowVisible(window) != 0 && IsWindowEnabled(window) != 0) {
            EnableWindow(window, FALSE);
            self.disabled_.push_back(window);
        }
        return TRUE;
    }

    HWND owner_;
    std::vector<HWND> disabled_;
};

int ToTwipsOfSystem(int pixels) {
    return ToTwips(pixels, GetDpiForSystem());
}

}  // namespace

int Win32Desktop::ShowMessage(const std::string& text, std::uint32_t style, const std::string& title) {
    loop_.Flush();
    HWND owner = loop_.ActiveWindow();
    const OtherWindowsDisabled others(owner);
    return MessageBoxW(owner, ToWide(text).c_str(), ToWide(title).c_str(), style | MB_SETFOREGROUND);
}

int Win32Desktop::ShowMessageFor(const std::string& text, std::uint32_t style, const std::string& title,
                                 std::uint32_t milliseconds) {
    loop_.Flush();
    HWND owner = loop_.ActiveWindow();
    const OtherWindowsDisabled others(owner);
    return ShowTimedMessage(owner, text, style | MB_SETFOREGROUND, title, milliseconds);
}

int Win32Desktop::ShowMessageWithCaptions(const std::string& text, std::uint32_t style, const std::string& title,
                                          const std::vector<ButtonCaption>& captions) {
    loop_.Flush();
    HWND owner = loop_.ActiveWindow();
    const OtherWindowsDisabled others(owner);
    return ShowCaptionedMessage(owner, text, style | MB_SETFOREGROUND, title, captions);
}

std::string Win32Desktop::AskText(const std::string& prompt, const std::string& title, int left, int top) {
    loop_.Flush();
    HWND owner = loop_.ActiveWindow();
    const OtherWindowsDisabled others(owner);
    const UINT dpi = GetDpiForSystem();
    return FromWide(AskInputBox(owner, {ToWide(prompt), ToWide(title), {ToPixels(left, dpi), ToPixels(top, dpi)}}));
}

void Win32Desktop::ShowHourglass(bool on) {
    loop_.SetHourglass(on);
    SetCursor(LoadCursorW(nullptr, on ? IDC_WAIT : IDC_ARROW));
}

void Win32Desktop::PaintPending() {
    loop_.Flush();
    loop_.Animate();
    MSG message{};
    for (int painted = 0; painted < paintLimit; ++painted) {
        // What others have sent is answered inside the look-up: the system asks that way whether the session may end.
        constexpr UINT paintAndSent = PM_REMOVE | PM_QS_PAINT | PM_QS_SENDMESSAGE;
        if (PeekMessageW(&message, nullptr, WM_PAINT, WM_PAINT, paintAndSent) == 0) {
            return;
        }
        DispatchMessageW(&message);
    }
}

void Win32Desktop::WaitForInput(std::uint32_t milliseconds) {
    loop_.Flush();
    if (RunActions()) {
        return;  // what came while a message box was open
    }
    const DWORD wait = loop_.NextFrameIn(milliseconds);
    const DWORD came = MsgWaitForMultipleObjectsEx(0, nullptr, wait, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    loop_.Animate();
    if (came != WAIT_OBJECT_0) {
        return;
    }
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        if (!loop_.TakesKey(message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        RunActions();
        loop_.Flush();  // the next message may be the one that paints
    }
    RunActions();  // messages that other programs sent are delivered inside the last look-up
}

bool Win32Desktop::RunActions() {
    loop_.RethrowKept();
    return loop_.RunPosted();
}

std::vector<Desktop::TopLevelWindow> Win32Desktop::TopLevelWindows() {
    std::vector<TopLevelWindow> windows;
    const auto add = [](HWND window, LPARAM list) -> BOOL {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        reinterpret_cast<std::vector<TopLevelWindow>*>(list)->push_back(
            {reinterpret_cast<std::uintptr_t>(window), process, GetParent(window) != nullptr});
        return TRUE;
    };
    EnumWindows(add, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

void Win32Desktop::CloseWindow(std::uint64_t handle) {
    // The window may be gone by now; there is nothing left to close then.
    static_cast<void>(SendMessageW(reinterpret_cast<HWND>(static_cast<std::uintptr_t>(handle)), WM_CLOSE, 0, 0));
}

void Win32Desktop::BlockShutdown(const std::string& reason) {
    loop_.BlockShutdown(ToWide(reason));
}

void Win32Desktop::AllowShutdown() {
    loop_.AllowShutdown();
}

bool Win32Desktop::SessionEnding() {
    // The question may have been sent and not looked at yet.
    MSG message{};
    static_cast<void>(PeekMessageW(&message, nullptr, WM_NULL, WM_NULL, PM_NOREMOVE | PM_QS_SENDMESSAGE));
    return loop_.Session().Ending();
}

void Win32Desktop::DiscardInput() {
    loop_.DiscardInput();
    MSG message{};
    constexpr std::array<std::pair<UINT, UINT>, 3> ranges{
        {{WM_KEYFIRST, WM_KEYLAST}, {WM_MOUSEFIRST, WM_MOUSELAST}, {WM_NCMOUSEMOVE, WM_NCXBUTTONDBLCLK}}};
    for (const auto& [first, last] : ranges) {
        while (PeekMessageW(&message, nullptr, first, last, PM_REMOVE) != 0) {
        }
    }
}

int Win32Desktop::ScrollBarWidth() {
    return ToTwipsOfSystem(GetSystemMetrics(SM_CXVSCROLL));
}

int Win32Desktop::ScrollBarHeight() {
    return ToTwipsOfSystem(GetSystemMetrics(SM_CYHSCROLL));
}

int Win32Desktop::ScreenWidth() {
    return ToTwipsOfSystem(GetSystemMetrics(SM_CXSCREEN));
}

int Win32Desktop::ScreenHeight() {
    return ToTwipsOfSystem(GetSystemMetrics(SM_CYSCREEN));
}

}  // namespace marlok::win32
