#include "win32/views/Keyboard.h"

#include <algorithm>
#include <string>
#include <utility>

#include "win32/machine/Wide.h"
#include "win32/views/NativeForm.h"

namespace marlok::win32 {

namespace {

/// Set in a key message when the key was down already.
constexpr LPARAM repeated = LPARAM{1} << 30;

bool IsDown(int key) {
    return (GetKeyState(key) & 0x8000) != 0;
}

bool Usable(const NativeControl& control) {
    return control.Window() != nullptr && control.Model().IsShown() && control.Model().Enabled;
}

bool TakesKeyboard(const NativeControl& control) {
    return Usable(control) && (GetWindowLongPtrW(control.Window(), GWL_STYLE) & WS_TABSTOP) != 0;
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

}  // namespace

bool Keyboard::Handle(const MSG& message) {
    if (IsWindowVisible(form_.Window()) == 0 || IsWindowEnabled(form_.Window()) == 0) {
        return false;
    }
    if (message.message == WM_KEYDOWN) {
        return KeyDown(message);
    }
    return message.message == WM_SYSCHAR && Letter(message);
}

bool Keyboard::KeyDown(const MSG& message) {
    const bool control = IsDown(VK_CONTROL);
    switch (message.wParam) {
        case VK_F1:
            return (message.lParam & repeated) != 0 || PressButton(form_.Model().HelpButton());
        case VK_ESCAPE:
            return !WantsKey(message) &&
                   ((message.lParam & repeated) != 0 || PressButton(form_.Model().CancelButton()));
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

bool Keyboard::Enter(const MSG& message) {
    if ((message.lParam & repeated) != 0) {
        return true;  // a key that is held down since it closed a message box must not start anything
    }
    NativeControl* focused = form_.Controls().FindAround(message.hwnd);
    if (focused != nullptr && Usable(*focused) && focused->TakesEnter()) {
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
    NativeControl* focused = form_.Controls().FindAround(focus);
    if (IsPushButton(focused) && Usable(*focused)) {
        return focused;
    }
    const forms::CommandButton* wanted = form_.Model().DefaultButton();
    NativeControl* button = wanted == nullptr ? nullptr : form_.Controls().Find(*wanted);
    return button != nullptr && Usable(*button) ? button : nullptr;
}

bool Keyboard::PressButton(forms::CommandButton* button) const {
    NativeControl* native = button == nullptr ? nullptr : form_.Controls().Find(*button);
    if (native == nullptr || !Usable(*native)) {
        return false;
    }
    native->Press();
    return true;
}

bool Keyboard::MoveOn(const MSG& message) {
    const NativeControl* next = Next(form_.Controls().FindAround(message.hwnd), IsDown(VK_SHIFT) ? -1 : 1);
    if (next == nullptr) {
        return false;
    }
    Give(*next);
    if ((SendMessageW(next->Window(), WM_GETDLGCODE, 0, 0) & DLGC_HASSETSEL) != 0) {
        SendMessageW(next->Window(), EM_SETSEL, 0, -1);
    }
    return true;
}

bool Keyboard::TurnTabs(int step) const {
    for (NativeControl* control : form_.Controls().InOrder()) {
        auto* tabs = dynamic_cast<forms::TabControl*>(&control->Model());
        if (tabs != nullptr && Usable(*control)) {
            form_.Post([tabs, step] { tabs->UserChose(tabs->NextEnabled(step)); });
            return true;
        }
    }
    return false;
}

bool Keyboard::Letter(const MSG& message) {
    const std::vector<NativeControl*> found = WithLetter(Upper(static_cast<wchar_t>(message.wParam)));
    if (found.empty()) {
        return false;
    }
    if (found.size() == 1) {
        if ((message.lParam & repeated) == 0) {
            Give(*found.front());
            found.front()->Press();
        }
        return true;
    }
    const NativeControl* next = form_.Controls().FindAround(message.hwnd);
    do {
        next = Next(next, 1);
    } while (next != nullptr && std::find(found.begin(), found.end(), next) == found.end());
    if (next != nullptr) {
        Give(*next);
    }
    return true;
}

std::vector<NativeControl*> Keyboard::WithLetter(wchar_t letter) const {
    std::vector<NativeControl*> found;
    for (NativeControl* control : form_.Controls().InOrder()) {
        const std::string* caption = control->PressCaption();
        if (caption != nullptr && TakesKeyboard(*control) && FirstLetter(*caption) == letter) {
            found.push_back(control);
        }
    }
    return found;
}

void Keyboard::Leave(const NativeControl& going) {
    HWND focus = GetFocus();
    if (going.Window() == nullptr || (focus != going.Window() && IsChild(going.Window(), focus) == 0)) {
        return;
    }
    const NativeControl* next = Next(&going, 1);
    SetFocus(next == nullptr || next == &going ? form_.Window() : next->Window());
}

void Keyboard::LeavePage(const NativeControl& tabs) {
    const NativeControl* focused = form_.Controls().FindAround(GetFocus());
    if (focused != nullptr && !focused->Model().IsShown()) {
        pageLost_ = &tabs;
        Leave(*focused);
        if (TakesKeyboard(tabs)) {
            Give(tabs);
        }
    }
}

void Keyboard::Settle() {
    const NativeControl* strip = std::exchange(pageLost_, nullptr);
    if (strip == nullptr || form_.Controls().FindAround(GetFocus()) != strip) {
        return;  // the program has put it elsewhere since
    }
    for (const NativeControl* control : form_.Controls().InOrder()) {
        if (control->Model().Tabs() == &strip->Model() && TakesKeyboard(*control)) {
            Give(*control);
            return;
        }
    }
}

void Keyboard::Forget(const NativeControl& gone) {
    pageLost_ = pageLost_ == &gone ? nullptr : pageLost_;
}

NativeControl* Keyboard::First() const {
    return Next(nullptr, 1);
}

/// The control after `from` (null: before the first), round the end, that can take the keyboard; `from` itself when it
/// is the only one, null when there is none.
NativeControl* Keyboard::Next(const NativeControl* from, int step) const {
    const std::vector<NativeControl*> order = form_.Controls().InOrder();
    const auto count = static_cast<int>(order.size());
    const auto found = std::find(order.begin(), order.end(), from);
    int place = step > 0 ? -1 : 0;
    if (found != order.end()) {
        place = static_cast<int>(found - order.begin());
    }
    for (int tried = 0; tried < count; ++tried) {
        place = (place + step + count) % count;
        NativeControl* control = order[static_cast<std::size_t>(place)];
        if (TakesKeyboard(*control)) {
            return control;
        }
    }
    return nullptr;
}

void Keyboard::Give(const NativeControl& control) const {
    // Whoever uses the keyboard wants to see where it is.
    SendMessageW(form_.Window(), WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS), 0);
    SetFocus(control.Window());
}

}  // namespace marlok::win32
