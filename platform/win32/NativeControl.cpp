#include "platform/win32/NativeControl.h"

#include <system_error>
#include <utility>

#include "forms/Controls.h"
#include "platform/win32/NativeControls.h"
#include "platform/win32/NativeList.h"
#include "platform/win32/Wide.h"

namespace marlok::win32 {

using forms::Aspect;

int ToPixels(int twips, UINT dpi) {
    return MulDiv(twips, static_cast<int>(dpi), 1440);
}

int ToTwips(int pixels, UINT dpi) {
    return MulDiv(pixels, 1440, static_cast<int>(dpi));
}

std::wstring WindowText(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
    text.resize(static_cast<std::size_t>(length));
    return text;
}

std::unique_ptr<NativeControl> NativeControl::For(forms::Control& control, Post post) {
    if (auto* label = dynamic_cast<forms::Label*>(&control)) {
        return std::make_unique<NativeLabel>(*label, std::move(post));
    }
    if (auto* button = dynamic_cast<forms::CommandButton*>(&control)) {
        return std::make_unique<NativeButton>(*button, std::move(post));
    }
    if (auto* textBox = dynamic_cast<forms::TextBox*>(&control)) {
        return std::make_unique<NativeTextBox>(*textBox, std::move(post));
    }
    if (auto* progress = dynamic_cast<forms::ProgressBar*>(&control)) {
        return std::make_unique<NativeProgressBar>(*progress, std::move(post));
    }
    if (auto* list = dynamic_cast<forms::ListBox*>(&control)) {
        return std::make_unique<NativeList>(*list, std::move(post));
    }
    return nullptr;
}

void NativeControl::Create(const Site& site, int id, HWND previous) {
    const WindowKind kind = Kind();
    site_ = site;
    window_ = CreateWindowExW(kind.extendedStyle, kind.className, L"", WS_CHILD | kind.style, 0, 0, 0, 0, site.parent,
                              reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
    if (window_ == nullptr) {
        throw std::system_error(static_cast<int>(LastError()), std::system_category(),
                                "control " + model_.Name() + " cannot be shown");
    }
    SetWindowPos(window_, previous == nullptr ? HWND_TOP : previous, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    Send(WM_SETFONT, reinterpret_cast<WPARAM>(site.font));
    MirrorPlace();
    for (const Aspect aspect : {Aspect::text, Aspect::value, Aspect::items, Aspect::selection}) {
        MirrorContent(aspect);
    }
    Flush();
    MirrorUse();
}

void NativeControl::Adapt(const Site& site) {
    site_ = site;
    if (window_ != nullptr) {
        Send(WM_SETFONT, reinterpret_cast<WPARAM>(site.font), TRUE);
        MirrorPlace();
        MirrorContent(Aspect::font);
        Flush();
    }
}

void NativeControl::Changed(Aspect aspect) {
    if (window_ == nullptr) {
        return;
    }
    switch (aspect) {
        case Aspect::place:
            MirrorPlace();
            break;
        case Aspect::visible:
        case Aspect::enabled:
            MirrorUse();
            break;
        default:
            MirrorContent(aspect);
            break;
    }
}

void NativeControl::SetText(const std::string& text) const {
    const std::wstring wide = ToWide(text);
    if (WindowText(window_) != wide) {
        SetWindowTextW(window_, wide.c_str());
    }
}

void NativeControl::PostAction(std::function<void()> action) const {
    post_([this, run = std::move(action)] {
        if (model_.Visible && model_.Enabled) {
            run();
        }
    });
}

void NativeControl::MirrorPlace() const {
    const UINT dpi = site_.dpi;
    // Both edges are converted, not the size: neighbours that touch in twips touch on the screen.
    const int left = ToPixels(model_.Left, dpi);
    const int top = ToPixels(model_.Top, dpi);
    const int right = ToPixels(model_.Left + model_.Width, dpi);
    const int bottom = ToPixels(model_.Top + model_.Height, dpi);
    SetWindowPos(window_, nullptr, left, top, right - left, bottom - top, SWP_NOZORDER | SWP_NOACTIVATE);
}

void NativeControl::MirrorUse() const {
    if (!model_.Visible || !model_.Enabled) {
        PassFocusOn();
    }
    EnableWindow(window_, model_.Enabled ? TRUE : FALSE);
    ShowWindow(window_, model_.Visible ? SW_SHOWNA : SW_HIDE);
}

/// A control that goes would keep the keyboard with it, and no key would reach the window any more.
void NativeControl::PassFocusOn() const {
    if (GetFocus() == window_) {
        HWND next = GetNextDlgTabItem(site_.parent, window_, FALSE);
        SetFocus(next == nullptr || next == window_ ? site_.parent : next);
    }
}

}  // namespace marlok::win32
