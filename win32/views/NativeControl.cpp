#include "win32/views/NativeControl.h"

#include <windows.h>
// Behind windows.h, whose types it uses.
#include <commctrl.h>

#include <system_error>
#include <utility>

#include "win32/machine/Wide.h"
#include "win32/views/AccessibleName.h"
#include "win32/views/MessageFont.h"
#include "win32/views/Twips.h"
#include "win32/views/WindowText.h"

namespace marlok::win32 {

using forms::Aspect;

bool IsColourMessage(UINT message) {
    return message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC;
}

NativeControl::~NativeControl() {
    if (window_ != nullptr && IsWindow(window_) != 0) {
        // What the window says while it is destroyed is of no use any more, and the derived part is gone.
        RemoveWindowSubclass(window_, &NativeControl::Procedure, 0);
        DestroyWindow(window_);
    }
}

void NativeControl::Create(const Site& site, int id, HWND above) {
    const WindowKind kind = Kind();
    site_ = site;
    window_ = CreateWindowExW(kind.extendedStyle, kind.className, L"", WS_CHILD | kind.style, 0, 0, 0, 0, site.parent,
                              reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
    if (window_ == nullptr) {
        throw std::system_error(static_cast<int>(LastError()), std::system_category(),
                                "control " + model_.Name() + " cannot be shown");
    }
    if (kind.watched &&
        SetWindowSubclass(window_, &NativeControl::Procedure, 0, reinterpret_cast<DWORD_PTR>(this)) == 0) {
        throw std::bad_alloc();
    }
    SetWindowPos(window_, above == nullptr ? HWND_TOP : above, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    MirrorFont();
    MirrorPlace();
    MirrorName();
    for (const Aspect aspect : {Aspect::text, Aspect::value, Aspect::items, Aspect::selection, Aspect::colour}) {
        MirrorContent(aspect);
    }
    Flush();
    MirrorUse();
}

void NativeControl::Adapt(const Site& site) {
    site_ = site;
    if (window_ != nullptr) {
        MirrorFont();
        MirrorPlace();
        MirrorContent(Aspect::font);
        Flush();
    }
}

void NativeControl::MoveInto(const Site& site, HWND above) {
    site_ = site;
    SetParent(window_, site.parent);
    SetWindowPos(window_, above == nullptr ? HWND_TOP : above, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    MirrorPlace();
}

void NativeControl::Changed(Aspect aspect) {
    if (window_ == nullptr) {
        return;
    }
    switch (aspect) {
        case Aspect::place:
        case Aspect::container:
            MirrorPlace();
            break;
        case Aspect::visible:
        case Aspect::enabled:
            MirrorUse();
            break;
        case Aspect::font:
            MirrorFont();
            MirrorContent(aspect);
            break;
        case Aspect::colour:
            MirrorColour();
            break;
        case Aspect::text:
            MirrorName();
            MirrorContent(aspect);
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

HBRUSH NativeControl::Colours(HDC surface, const std::function<HBRUSH()>& behind) {
    const forms::Colour text = model_.ForeColor;
    const forms::Colour back = model_.BackColor;
    if (text == forms::systemColour && back == forms::systemColour && !IsTransparent()) {
        return nullptr;
    }
    SetTextColor(surface, text != forms::systemColour ? text : GetSysColor(COLOR_WINDOWTEXT));
    if (back != forms::systemColour) {
        if (!back_.IsValid()) {
            back_.Reset(CreateSolidBrush(back));
        }
        SetBkColor(surface, back);
        return back_.Get();
    }
    if (IsTransparent()) {
        SetBkMode(surface, TRANSPARENT);
        return behind();
    }
    SetBkColor(surface, GetSysColor(COLOR_WINDOW));
    return GetSysColorBrush(COLOR_WINDOW);
}

LRESULT NativeControl::Default(UINT message, WPARAM first, LPARAM second) const {
    return DefSubclassProc(window_, message, first, second);
}

LRESULT CALLBACK NativeControl::Procedure(HWND window, UINT message, WPARAM first, LPARAM second, UINT_PTR,
                                          DWORD_PTR self) {
    auto& control = *reinterpret_cast<NativeControl*>(self);
    // Not yet known to the control: what the system does while it is being made is the window's own business.
    return control.window_ == window ? control.Handle(message, first, second)
                                     : DefSubclassProc(window, message, first, second);
}

void NativeControl::PostWhileAlive(std::function<void()> action) const {
    post_([alive = std::weak_ptr<const bool>(alive_), run = std::move(action)] {
        if (!alive.expired()) {
            run();
        }
    });
}

void NativeControl::PostAction(std::function<void()> action) const {
    PostWhileAlive([this, run = std::move(action)] {
        if (IsUsable()) {
            run();
        }
    });
}

void NativeControl::PostDevicesChanged() {
    PostWhileAlive([this] { DevicesChanged(); });
}

void NativeControl::MirrorPlace() const {
    int x = model_.Left;
    int y = model_.Top;
    for (const forms::Control* around = model_.Container(); around != nullptr && around != site_.container;
         around = around->Container()) {
        x += around->Left;
        y += around->Top;
    }
    // Both edges are converted, not the size: neighbours that touch in twips touch on the screen.
    const UINT dpi = site_.dpi;
    const int left = ToPixels(x, dpi);
    const int top = ToPixels(y, dpi);
    const int width = ToPixels(x + model_.Width, dpi) - left;
    const int height = ToPixels(y + model_.Height, dpi) - top;
    // The picture of what lies behind the control is another one at another place.
    const UINT copy = IsTransparent() ? SWP_NOCOPYBITS : 0;
    SetWindowPos(window_, nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE | copy);
}

void NativeControl::MirrorUse() const {
    EnableWindow(window_, model_.Enabled ? TRUE : FALSE);
    ShowWindow(window_, model_.IsShown() ? SW_SHOWNA : SW_HIDE);
}

void NativeControl::MirrorFont() {
    const forms::Font& wanted = model_.TextFont;
    FontHandle font = wanted == forms::Font{} ? FontHandle() : MakeFont(wanted, site_.dpi);
    Send(WM_SETFONT, reinterpret_cast<WPARAM>(font.IsValid() ? font.Get() : site_.font), TRUE);
    font_ = std::move(font);  // the old one goes when the window has the new one
}

void NativeControl::MirrorColour() {
    back_.Reset();
    MirrorContent(Aspect::colour);
    InvalidateRect(window_, nullptr, TRUE);
}

void NativeControl::MirrorName() {
    const std::string& name = model_.AccessibleName;
    if (name == named_) {
        return;  // the text that has changed is another one
    }
    named_ = name;
    if (!HasText()) {
        SetText(name);
    }
    NameForScreenReaders(window_, name);
}

}  // namespace marlok::win32
