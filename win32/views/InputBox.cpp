#include "win32/views/InputBox.h"

#include <algorithm>
#include <optional>
#include <system_error>
#include <utility>

#include "win32/machine/Handles.h"
#include "win32/machine/Wide.h"
#include "win32/views/MessageFont.h"
#include "win32/views/TextSurface.h"
#include "win32/views/WindowText.h"
#include "win32/views/WorkArea.h"

namespace marlok::win32 {

namespace {

/// Sizes at 96 DPI, as the system's own dialogs have them.
constexpr int margin = 11;
constexpr int gap = 7;
constexpr int promptWidth = 360;
constexpr int buttonWidth = 75;
constexpr int fieldPadding = 8;
constexpr int buttonPadding = 10;

int Scaled(int pixels, UINT dpi) {
    return MulDiv(pixels, static_cast<int>(dpi), USER_DEFAULT_SCREEN_DPI);
}

RECT At(int left, int top, int width, int height) {
    return {left, top, left + width, top + height};
}

void Place(HWND window, const RECT& place) {
    SetWindowPos(window, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

/// A dialog template without controls: sizes in a template are multiples of its font, and the prompt has to be
/// measured.
struct EmptyTemplate {
    DLGTEMPLATE head;
    WORD menu;
    WORD windowClass;
    WORD title;
};

class InputBox {
 public:
    explicit InputBox(const InputBoxRequest& request) : request_(request) {}
    InputBox(const InputBox&) = delete;
    InputBox& operator=(const InputBox&) = delete;
    ~InputBox() = default;

    [[nodiscard]] std::wstring Ask(HWND owner) {
        EmptyTemplate empty{};
        empty.head.style = WS_POPUP | WS_VISIBLE | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_SETFOREGROUND;
        const INT_PTR result = DialogBoxIndirectParamW(GetModuleHandleW(nullptr), &empty.head, owner,
                                                       &InputBox::Procedure, reinterpret_cast<LPARAM>(this));
        if (result <= 0) {
            const SystemError code = failure_.value_or(LastError());
            throw std::system_error(static_cast<int>(code), std::system_category(), "an input box cannot be shown");
        }
        return result == IDOK ? text_ : std::wstring();
    }

 private:
    // Nothing may be thrown through the system's frames that called this.
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM first, LPARAM second) noexcept {
        if (message == WM_INITDIALOG) {
            SetWindowLongPtrW(window, DWLP_USER, second);
            reinterpret_cast<InputBox*>(second)->Open(window);
            return FALSE;  // the keyboard is where it belongs
        }
        auto* const box = reinterpret_cast<InputBox*>(GetWindowLongPtrW(window, DWLP_USER));
        return box == nullptr ? FALSE : box->Handle(message, first, second);
    }

    INT_PTR Handle(UINT message, WPARAM first, LPARAM second) {
        if (message == WM_COMMAND && (LOWORD(first) == IDOK || LOWORD(first) == IDCANCEL)) {
            Close(LOWORD(first));
            return TRUE;
        }
        if (message == WM_DPICHANGED) {
            const RECT& suggested = *reinterpret_cast<const RECT*>(second);
            Place(window_, Arrange(HIWORD(first), {suggested.left, suggested.top}));
            return TRUE;
        }
        return FALSE;
    }

    void Open(HWND window) {
        window_ = window;
        SetWindowTextW(window, request_.title.c_str());
        // First to the screen where it will be: that one's resolution decides how large everything is.
        SetWindowPos(window, nullptr, request_.corner.x, request_.corner.y, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        // The prompt stands before the field, which takes its name for screen readers from it.
        prompt_ = Make(L"Static", request_.prompt, SS_LEFT | SS_NOPREFIX | SS_EDITCONTROL, inputBoxPromptId);
        field_ = Make(L"Edit", L"", WS_TABSTOP | WS_BORDER | ES_LEFT | ES_AUTOHSCROLL, inputBoxFieldId);
        ok_ = Make(L"Button", L"OK", WS_TABSTOP | BS_DEFPUSHBUTTON, IDOK);
        cancel_ = Make(L"Button", L"Cancel", WS_TABSTOP | BS_PUSHBUTTON, IDCANCEL);
        if (failure_) {
            EndDialog(window, -1);
            return;
        }
        SendMessageW(field_, EM_SETLIMITTEXT, inputBoxLimit, 0);
        Place(window, MovedOntoWorkArea(Arrange(GetDpiForWindow(window), request_.corner)));
        SetFocus(field_);
    }

    HWND Make(const wchar_t* windowClass, const std::wstring& text, DWORD style, int id) {
        const DWORD extendedStyle = id == inputBoxFieldId ? WS_EX_CLIENTEDGE : 0;
        HWND made = CreateWindowExW(extendedStyle, windowClass, text.c_str(), WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0,
                                    window_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                    GetModuleHandleW(nullptr), nullptr);
        if (made == nullptr && !failure_) {
            failure_ = LastError();
        }
        return made;
    }

    /// Gives everything in the box its font, size and place for a screen of that resolution. The place of the box with
    /// its upper left corner there.
    [[nodiscard]] RECT Arrange(UINT dpi, POINT corner) {
        const FontHandle old = std::exchange(font_, MakeFont({}, dpi));  // in use until the controls have the new one
        for (HWND control : {prompt_, field_, ok_, cancel_}) {
            SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_.Get()), FALSE);
        }
        const InputBoxLayout layout = Measure(dpi);
        Place(prompt_, layout.prompt);
        Place(field_, layout.field);
        Place(ok_, layout.ok);
        Place(cancel_, layout.cancel);
        RECT outer = {0, 0, layout.client.cx, layout.client.cy};
        const auto style = static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_STYLE));
        const auto extendedStyle = static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_EXSTYLE));
        AdjustWindowRectExForDpi(&outer, style, FALSE, extendedStyle, dpi);
        OffsetRect(&outer, corner.x - outer.left, corner.y - outer.top);
        RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
        return outer;
    }

    [[nodiscard]] InputBoxLayout Measure(UINT dpi) const {
        const TextSurface surface(prompt_);
        const TEXTMETRICW font = surface.Metrics();
        RECT text = {0, 0, InputBoxPromptWidth(dpi), 0};
        DrawTextW(surface.Get(), request_.prompt.c_str(), -1, &text,
                  DT_CALCRECT | DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX | DT_EXPANDTABS);
        // However long the prompt is, the field and the buttons stay on the screen.
        const int limit = GetSystemMetrics(SM_CYFULLSCREEN) / 2;
        return LayOutInputBox(dpi, std::min(static_cast<int>(text.bottom), limit), static_cast<int>(font.tmHeight));
    }

    void Close(int button) {
        std::wstring text = WindowText(field_);
        if (text.size() > inputBoxLimit) {  // a program may set more than a user can type
            text.resize(inputBoxLimit);
            if (IS_HIGH_SURROGATE(text.back())) {
                text.pop_back();  // no half of a character
            }
        }
        text_ = std::move(text);
        EndDialog(window_, button);
    }

    const InputBoxRequest& request_;
    FontHandle font_;
    HWND window_ = nullptr;
    HWND prompt_ = nullptr;
    HWND field_ = nullptr;
    HWND ok_ = nullptr;
    HWND cancel_ = nullptr;
    std::optional<SystemError> failure_;
    std::wstring text_;
};

}  // namespace

int InputBoxPromptWidth(UINT dpi) {
    return Scaled(promptWidth, dpi);
}

InputBoxLayout LayOutInputBox(UINT dpi, int promptHeight, int lineHeight) {
    const int edge = Scaled(margin, dpi);
    const int between = Scaled(gap, dpi);
    const int width = InputBoxPromptWidth(dpi);
    const int right = edge + width;
    // A font that is larger than the screen's resolution asks for needs wider buttons, too.
    const int button = std::max(Scaled(buttonWidth, dpi), 4 * lineHeight);
    const int buttonHeight = lineHeight + Scaled(buttonPadding, dpi);
    InputBoxLayout layout{};
    layout.prompt = At(edge, edge, width, promptHeight);
    layout.field = At(edge, layout.prompt.bottom + between, width, lineHeight + Scaled(fieldPadding, dpi));
    const int row = layout.field.bottom + edge;
    layout.cancel = At(right - button, row, button, buttonHeight);
    layout.ok = At(layout.cancel.left - between - button, row, button, buttonHeight);
    layout.client = {right + edge, row + buttonHeight + edge};
    return layout;
}

std::wstring AskInputBox(HWND owner, const InputBoxRequest& request) {
    return InputBox(request).Ask(owner);
}

}  // namespace marlok::win32
