#include "win32/views/CaptionedMessage.h"

// Behind windows.h, whose types it uses.
#include <commctrl.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "win32/machine/Handles.h"
#include "win32/machine/Wide.h"
#include "win32/views/TextSurface.h"
#include "win32/views/WindowText.h"
#include "win32/views/WorkArea.h"

namespace marlok::win32 {

namespace {

/// The class of the system's dialogs, message boxes among them.
constexpr std::wstring_view dialogClass = L"#32770";

struct WideCaption {
    int button;
    std::wstring text;
};

bool IsOfClass(HWND window, std::wstring_view name) {
    std::array<wchar_t, 64> buffer{};
    const int length = GetClassNameW(window, buffer.data(), static_cast<int>(buffer.size()));
    return std::wstring_view(buffer.data(), static_cast<std::size_t>(length)) == name;
}

struct Button {
    HWND window;
    RECT place;  ///< in the box
};

/// The buttons of a message box, from left to right.
std::vector<Button> ButtonsOf(HWND box) {
    std::vector<Button> buttons;
    for (HWND child = GetWindow(box, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        if (IsOfClass(child, L"Button") && (GetWindowLongPtrW(child, GWL_STYLE) & WS_VISIBLE) != 0) {
            RECT place{};
            GetWindowRect(child, &place);
            MapWindowPoints(nullptr, box, reinterpret_cast<POINT*>(&place), 2);
            buttons.push_back({child, place});
        }
    }
    std::sort(buttons.begin(), buttons.end(),
              [](const Button& one, const Button& other) { return one.place.left < other.place.left; });
    return buttons;
}

/// How wide a button has to be for its caption, with half a line's height of room on either side.
LONG NeededWidth(HWND button) {
    const TextSurface surface(button);
    RECT text{};
    DrawTextW(surface.Get(), WindowText(button).c_str(), -1, &text, DT_CALCRECT | DT_SINGLELINE);
    return (text.right - text.left) + (text.bottom - text.top);
}

/// Makes the box wider by `pixels`, half of them on each side.
void WidenBox(HWND box, LONG pixels) {
    RECT outer{};
    GetWindowRect(box, &outer);
    outer.left -= pixels / 2;
    outer.right += pixels - pixels / 2;
    const RECT place = MovedOntoWorkArea(outer);
    SetWindowPos(box, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

/// The width that all buttons need to be equally wide, each wide enough, none narrower than now.
LONG CommonWidth(const std::vector<Button>& buttons) {
    LONG width = 0;
    for (const Button& button : buttons) {
        width = std::max({width, button.place.right - button.place.left, NeededWidth(button.window)});
    }
    return width;
}

/// Puts the buttons side by side from `left` on; the distances between them stay.
void PlaceRow(const std::vector<Button>& buttons, LONG left, LONG width) {
    for (std::size_t index = 0; index < buttons.size(); ++index) {
        const RECT& place = buttons[index].place;
        const LONG gap = index + 1 < buttons.size() ? buttons[index + 1].place.left - place.right : 0;
        SetWindowPos(buttons[index].window, nullptr, left, place.top, width, place.bottom - place.top,
                     SWP_NOZORDER | SWP_NOACTIVATE);
        left += width + gap;
    }
}

/// Gives every button the width that the widest caption needs. The row stays at the right or in the middle, where the
/// system has put it. Does nothing when all is well.
void MakeCaptionsFit(HWND box) {
    const std::vector<Button> buttons = ButtonsOf(box);
    const LONG width = CommonWidth(buttons);
    LONG added = 0;
    for (const Button& button : buttons) {
        added += width - (button.place.right - button.place.left);
    }
    if (added == 0) {
        return;
    }
    RECT client{};
    GetClientRect(box, &client);
    const LONG leftMargin = buttons.front().place.left;
    const LONG rightMargin = client.right - buttons.back().place.right;
    const LONG row = buttons.back().place.right - leftMargin + added;
    const LONG clientWidth = std::max(client.right, row + 2 * std::min(leftMargin, rightMargin));
    if (clientWidth > client.right) {
        WidenBox(box, clientWidth - client.right);
    }
    const bool atTheRight = leftMargin > rightMargin + 1;
    PlaceRow(buttons, atTheRight ? clientWidth - rightMargin - row : (clientWidth - row) / 2, width);
}

/// Renames the buttons of the next message box that this thread shows. Ends itself with that, and at the latest when it
/// is destroyed: boxes after it have the captions of the system.
class CaptionHook {
 public:
    explicit CaptionHook(const std::vector<Desktop::ButtonCaption>& captions) {
        for (const Desktop::ButtonCaption& caption : captions) {
            captions_.push_back({caption.button, ToWide(caption.caption)});
        }
        if (current != nullptr) {
            throw std::logic_error("a message box with captions is being shown already");
        }
        hook_.Reset(SetWindowsHookExW(WH_CBT, &CaptionHook::Procedure, nullptr, GetCurrentThreadId()));
        if (!hook_.IsValid()) {
            throw std::system_error(static_cast<int>(LastError()), std::system_category(),
                                    "captions of a message box cannot be set");
        }
        current = this;
    }
    CaptionHook(const CaptionHook&) = delete;
    CaptionHook& operator=(const CaptionHook&) = delete;
    ~CaptionHook() { End(); }

 private:
    struct Traits {
        using Value = HHOOK;
        static Value Invalid() { return nullptr; }
        static void Close(Value value) { UnhookWindowsHookEx(value); }
    };

    // Nothing may be thrown through the system's frames that called this.
    static LRESULT CALLBACK Procedure(int code, WPARAM first, LPARAM second) noexcept {
        const LRESULT result = CallNextHookEx(nullptr, code, first, second);
        if (code == HCBT_ACTIVATE && current != nullptr) {
            current->Activated(reinterpret_cast<HWND>(first));
        }
        return result;
    }

    void Activated(HWND window) {
        if (!IsOfClass(window, dialogClass) || !HasButtons(window)) {
            return;  // a window of the program that comes to the front before the box does
        }
        End();  // first: what follows may activate windows itself
        Dress(window);
        // A box that is called to the foreground is active before it is laid out; then once more when it is shown.
        // Should that fail, the captions are still the right ones.
        SetWindowSubclass(window, &CaptionHook::BoxProcedure, 0, reinterpret_cast<DWORD_PTR>(this));
    }

    static LRESULT CALLBACK BoxProcedure(HWND box, UINT message, WPARAM first, LPARAM second, UINT_PTR id,
                                         DWORD_PTR self) noexcept {
        if (message == WM_SHOWWINDOW && first != FALSE) {
            reinterpret_cast<const CaptionHook*>(self)->Dress(box);
        } else if (message == WM_NCDESTROY) {
            RemoveWindowSubclass(box, &CaptionHook::BoxProcedure, id);
        }
        return DefSubclassProc(box, message, first, second);
    }

    void Dress(HWND box) const {
        for (const WideCaption& caption : captions_) {
            SetDlgItemTextW(box, caption.button, caption.text.c_str());
        }
        MakeCaptionsFit(box);
    }

    [[nodiscard]] bool HasButtons(HWND box) const {
        return std::all_of(captions_.begin(), captions_.end(),
                           [box](const WideCaption& caption) { return GetDlgItem(box, caption.button) != nullptr; });
    }

    void End() {
        hook_.Reset();
        if (current == this) {
            current = nullptr;
        }
    }

    /// A hook procedure is told nothing but the window: this is how it finds the captions.
    static inline thread_local CaptionHook* current = nullptr;

    std::vector<WideCaption> captions_;
    Owner<Traits> hook_;
};

}  // namespace

int ShowCaptionedMessage(HWND owner, const std::string& text, std::uint32_t style, const std::string& title,
                         const std::vector<Desktop::ButtonCaption>& captions) {
    const CaptionHook hook(captions);
    return MessageBoxW(owner, ToWide(text).c_str(), ToWide(title).c_str(), style);
}

}  // namespace marlok::win32
