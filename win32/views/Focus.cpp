#include "win32/views/Focus.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "forms/TabControl.h"

namespace marlok::win32 {

NativeControl* Focus::Next(const NativeControl* from, int step) const {
    const std::vector<NativeControl*> order = controls_.InOrder();
    const auto count = static_cast<int>(order.size());
    const auto found = std::find(order.begin(), order.end(), from);
    int place = step > 0 ? -1 : 0;
    if (found != order.end()) {
        place = static_cast<int>(found - order.begin());
    }
    for (int tried = 0; tried < count; ++tried) {
        place = (place + step + count) % count;
        NativeControl* control = order[static_cast<std::size_t>(place)];
        if (control->TakesKeyboard()) {
            return control;
        }
    }
    return nullptr;
}

void Focus::Give(const NativeControl& control) const {
    // Whoever uses the keyboard wants to see where it is.
    SendMessageW(window_, WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS), 0);
    SetFocus(control.Window());
}

void Focus::Leave(const NativeControl& going) const {
    HWND focus = GetFocus();
    if (focus != going.Window() && IsChild(going.Window(), focus) == 0) {
        return;
    }
    const NativeControl* next = Next(&going, 1);
    SetFocus(next == nullptr || next == &going ? window_ : next->Window());
}

void Focus::LeavePage(const NativeControl& tabs) {
    const NativeControl* focused = controls_.FindAround(GetFocus());
    if (focused != nullptr && !focused->Model().IsShown()) {
        pageLost_ = &tabs;
        Leave(*focused);
        if (tabs.TakesKeyboard()) {
            Give(tabs);
        }
    }
}

void Focus::Settle() {
    const NativeControl* strip = std::exchange(pageLost_, nullptr);
    if (strip == nullptr || controls_.FindAround(GetFocus()) != strip) {
        return;  // the program has put it elsewhere since
    }
    for (const NativeControl* control : controls_.InOrder()) {
        if (control->Model().Tabs() == &strip->Model() && control->TakesKeyboard()) {
            Give(*control);
            return;
        }
    }
}

void Focus::Keep() {
    HWND focus = GetFocus();
    last_ = focus != nullptr && IsChild(window_, focus) != 0 ? focus : nullptr;
}

void Focus::Restore() const {
    HWND wanted = last_;
    if (wanted == nullptr || IsWindowVisible(wanted) == 0 || IsWindowEnabled(wanted) == 0) {
        const NativeControl* first = First();
        wanted = first == nullptr ? nullptr : first->Window();
    }
    if (wanted != nullptr) {
        SetFocus(wanted);
    }
}

void Focus::Forget(const NativeControl& gone) {
    pageLost_ = pageLost_ == &gone ? nullptr : pageLost_;
    last_ = last_ == gone.Window() ? nullptr : last_;
}

}  // namespace marlok::win32
