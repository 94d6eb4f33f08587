#include "win32/views/Keyboard.h"

#include <algorithm>
#include <string>

#include "forms/TabControl.h"
#include "win32/machine/Wide.h"

namespace marlok::win32 {

namespace {

/// Set in a key message when the key was down already.
constexpr LPARAM repeated = LPARAM{1} << 30;

bool IsDown(int key) {
    return (GetKeyState(key) & 0x8000) != 0;
}

bool IsPushButton(const NativeControl* control) {
    return control != nullptr && dynamic_cast<const forms::CommandButton*>(&control->Model()) != nullptr;
}

/// True when the window wants this very key for itself: an open drop-down list is closed by Enter.
bool WantsKey(const MSG& message) {
    const LRESULT code = SendMessageW(message.hwnd, WM_GETDLGCODE, message.wParam, reinterpret_cast<LPARAM>(&message));
    return (code & DLGC_WANTMESSAGE) != 0;
}

wchar_t Upper(wchar_t letter) {
    CharUpperBuffW(&letter, 1);
    return letter;
}

wchar_t FirstLetter(const std::string& caption) {
    const std::wstring wide = ToWide(caption);
    const std::size_t first = wide.find_first_not_of(L' ');
    return first == std::wstring::npos ? L'\0' : Upper(wide[first]);
}

void SetButtonKind(HWND button, LONG_PTR kind) {
    const LONG_PTR others = GetWindowLongPtrW(button, GWL_STYLE) & 0xFFFF & ~LONG_PTR{BS_TYPEMASK};
    SendMessageW(button, BM_SETSTYLE, static_cast<WPARAM>(others | kind), TRUE);
}

}  // namespace

bool Keyboard::Handle(const MSG& message) const {
    if (IsWindowVisible(window_) == 0 || IsWindowEnabled(window_) == 0) {
        return false;
    }
    if (message.message == WM_KEYDOWN) {
        return KeyDown(message);
    }
    return message.message == WM_SYSCHAR && Letter(message);
}

bool Keyboard::KeyDown(const MSG& message) const {
    const bool control = IsDown(VK_CONTROL);
    switch (message.wParam) {
        case VK_F1:
            if ((message.lParam & repeated) == 0) {
                post_([this] { form_.AskForHelp(); });
            }
            return true;
        case VK_ESCAPE:
            return !WantsKey(message) && ((message.lParam & repeated) != 0 || PressButton(form_.CancelButton()));
        case VK_RETURN:
            return !WantsKey(message) && Enter(message);
        case VK_TAB:
            return control ? TurnTabs(IsDown(VK_SHIFT) ? -1 : 1) : !WantsKey(message) && MoveOn(message);
        case VK_NEXT:
            return control && TurnTabs(1);
        case VK_PRIOR:
            return control && TurnTabs(-1);
        default:
            return false;
    }
}

bool Keyboard::Enter(const MSG& message) const {
    if ((message.lParam & repeated) != 0) {
        return true;  // a key that is held down since it closed a message box must not start anything
    }
    NativeControl* focused = controls_.FindAround(message.hwnd);
    if (focused != nullptr && focused->IsUsable() && focused->TakesEnter()) {
        focused->EnterPressed();
        return true;
    }
    NativeControl* button = EnterButton(message.hwnd);
    if (button != nullptr) {
        button->Press();
    }
    return button != nullptr;
}

NativeControl* Keyboard::EnterButton(HWND focus) const {
    NativeControl* focused = controls_.FindAround(focus);
    if (IsPushButton(focused) && focused->IsUsable()) {
        return focused;
    }
    const forms::CommandButton* wanted = form_.DefaultButton();
    NativeControl* button = wanted == nullptr ? nullptr : controls_.Find(*wanted);
    return button != nullptr && button->IsUsable() ? button : nullptr;
}

bool Keyboard::PressButton(const forms::CommandButton* button) const {
    NativeControl* native = button == nullptr ? nullptr : controls_.Find(*button);
    if (native == nullptr || !native->IsUsable()) {
        return false;
    }
    native->Press();
    return true;
}

bool Keyboard::MoveOn(const MSG& message) const {
    const NativeControl* next = focus_.Next(controls_.FindAround(message.hwnd), IsDown(VK_SHIFT) ? -1 : 1);
    if (next == nullptr) {
        return false;
    }
    focus_.Give(*next);
    if ((SendMessageW(next->Window(), WM_GETDLGCODE, 0, 0) & DLGC_HASSETSEL) != 0) {
        SendMessageW(next->Window(), EM_SETSEL, 0, -1);
    }
    return true;
}

bool Keyboard::TurnTabs(int step) const {
    for (NativeControl* control : controls_.InOrder()) {
        auto* tabs = dynamic_cast<forms::TabControl*>(&control->Model());
        if (tabs != nullptr && control->IsUsable()) {
            post_([tabs, step] { tabs->UserChose(tabs->NextEnabled(step)); });
            return true;
        }
    }
    return false;
}

bool Keyboard::Letter(const MSG& message) const {
    const std::vector<NativeControl*> found = WithLetter(Upper(static_cast<wchar_t>(message.wParam)));
    if (found.empty()) {
        return false;
    }
    if (found.size() == 1) {
        if ((message.lParam & repeated) == 0) {
            focus_.Give(*found.front());
            found.front()->Press();
        }
        return true;
    }
    const NativeControl* next = controls_.FindAround(message.hwnd);
    do {
        next = focus_.Next(next, 1);
    } while (next != nullptr && std::find(found.begin(), found.end(), next) == found.end());
    if (next != nullptr) {
        focus_.Give(*next);
    }
    return true;
}

std::vector<NativeControl*> Keyboard::WithLetter(wchar_t letter) const {
    std::vector<NativeControl*> found;
    for (NativeControl* control : controls_.InOrder()) {
        const std::string* caption = control->PressCaption();
        if (caption != nullptr && control->TakesKeyboard() && FirstLetter(*caption) == letter) {
            found.push_back(control);
        }
    }
    return found;
}

void Keyboard::ShowEnterButton() {
    const NativeControl* button = EnterButton(GetFocus());
    HWND wanted = button == nullptr ? nullptr : button->Window();
    if (wanted == enterButton_) {
        return;
    }
    if (enterButton_ != nullptr) {
        SetButtonKind(enterButton_, BS_PUSHBUTTON);
    }
    if (wanted != nullptr) {
        SetButtonKind(wanted, BS_DEFPUSHBUTTON);
    }
    enterButton_ = wanted;
}

LRESULT Keyboard::EnterButtonId() const {
    const NativeControl* button = EnterButton(GetFocus());
    return button == nullptr ? 0 : MAKELRESULT(GetDlgCtrlID(button->Window()), DC_HASDEFID);
}

void Keyboard::Forget(const NativeControl& gone) {
    enterButton_ = enterButton_ == gone.Window() ? nullptr : enterButton_;
}

}  // namespace marlok::win32
