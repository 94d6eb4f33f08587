#include "win32/views/NativeForm.h"

#include <algorithm>
#include <exception>
#include <system_error>
#include <utility>

#include "forms/TabControl.h"
#include "win32/machine/Wide.h"
#include "win32/views/Twips.h"
#include "win32/views/WindowText.h"

namespace marlok::win32 {

using forms::Aspect;

NativeForm::NativeForm(forms::Form& form, NativeLoop& loop)
    : form_(form),
      loop_(loop),
      window_(CreateHidden(form)),
      place_(form, Window(), [this] { LayOut(); }),
      controls_(form, Poster()),
      focus_(Window(), controls_),
      keyboard_(form, Window(), controls_, focus_, Poster()),
      backdrop_(form, Window(), controls_),
      messages_({Window(), place_, controls_, focus_, keyboard_, backdrop_}, loop,
                [this] { loop_.Post(*this, [this] { form_.UserClosed(); }); }) {
    controls_.Adapt(Window(), place_.Dpi());
    place_.CutToScreen();
    place_.Mirror();
    CreateControls();
    messages_.Begin();  // from here on nothing throws, and the window may call
    loop_.Add(*this);
}

NativeForm::~NativeForm() {
    loop_.Remove(*this);
}

WindowHandle NativeForm::CreateHidden(const forms::Form& form) {
    const UINT dpi = GetDpiForSystem();
    WindowHandle window(CreateWindowExW(0, FormMessages::WindowClass(), ToWide(form.Caption()).c_str(), formStyle,
                                        ToPixels(form.Left(), dpi), ToPixels(form.Top(), dpi), 0, 0, nullptr, nullptr,
                                        GetModuleHandleW(nullptr), nullptr));
    if (!window.IsValid()) {
        throw std::system_error(static_cast<int>(LastError()), std::system_category(),
                                "window " + form.Name() + " cannot be shown");
    }
    return window;
}

void NativeForm::CreateControls() {
    for (forms::Control* control : form_.Controls()) {
        if (control->IsShown()) {
            ControlChanged(*control, Aspect::visible);
        }
    }
}

void NativeForm::FormChanged() {
    const std::wstring caption = ToWide(form_.Caption());
    if (WindowText(Window()) != caption) {
        SetWindowTextW(Window(), caption.c_str());
    }
    backdrop_.MirrorRows();
    place_.Mirror();
    MirrorVisible();
}

void NativeForm::ControlChanged(const forms::Control& control, Aspect aspect) {
    NativeControl* native = controls_.Find(control);
    const NativeControl* created = native == nullptr && control.IsShown() ? controls_.Create(control) : nullptr;
    if (native != nullptr) {
        MirrorControl(*native, aspect);
    } else if (created != nullptr && Backdrop::IsGround(*created)) {
        backdrop_.Changed();
    }
    if (created != nullptr || aspect == Aspect::visible) {
        MirrorControlsIn(control, Aspect::visible);
    } else if (aspect == Aspect::place || aspect == Aspect::container) {
        MirrorControlsIn(control, Aspect::place);
    }
}

void NativeForm::MirrorControl(NativeControl& native, Aspect aspect) {
    const forms::Control& control = native.Model();
    if (native.Place() == NativeControl::Layer::tabs && aspect == Aspect::selection) {
        focus_.LeavePage(native);
    }
    if (!control.IsShown() || !control.Enabled) {
        focus_.Leave(native);
    }
    if (aspect == Aspect::visible || aspect == Aspect::container) {
        controls_.Rehome(native);
    }
    native.Changed(aspect);
    if (Backdrop::IsGround(native)) {
        backdrop_.Changed();
    }
}

/// A control goes with what it lies in, of which it hears nothing itself.
void NativeForm::MirrorControlsIn(const forms::Control& around, Aspect aspect) {
    for (const forms::Control* inner : form_.Controls()) {
        if (inner->Container() == &around || (inner->Tabs() == &around && aspect == Aspect::visible)) {
            ControlChanged(*inner, aspect);
        }
    }
}

void NativeForm::ControlRemoved(const forms::Control& control) {
    if (const NativeControl* native = controls_.Find(control)) {
        focus_.Leave(*native);
        focus_.Forget(*native);
        keyboard_.Forget(*native);
        backdrop_.Forget();
        controls_.Remove(control);
    }
}

/// Has actions of the user run later, if the form can still be seen then.
NativeControl::Post NativeForm::Poster() {
    return [this](NativeLoop::Action action) {
        loop_.Post(*this, [this, run = std::move(action)] {
            if (form_.IsVisible()) {  // it may have been hidden or unloaded by an action before this one
                run();
            }
        });
    };
}

/// Often runs inside a window procedure, where nothing may be thrown.
void NativeForm::LayOut() {
    try {
        form_.Form_Resize();
    } catch (...) {
        loop_.Keep(std::current_exception());
    }
}

void NativeForm::Flush() {
    for (const auto& control : controls_.All()) {
        if (control->Window() != nullptr) {
            control->Flush();
        }
    }
    focus_.Settle();
    keyboard_.ShowEnterButton();
}

void NativeForm::Animate() {
    if (!form_.IsVisible()) {
        return;
    }
    for (const auto& control : controls_.All()) {
        if (control->Window() != nullptr && control->Model().IsShown()) {
            control->Animate();
        }
    }
}

std::uint32_t NativeForm::NextFrameIn() const {
    std::uint32_t next = NativeControl::never;
    for (const auto& control : controls_.All()) {
        if (form_.IsVisible() && control->Window() != nullptr && control->Model().IsShown()) {
            next = std::min(next, control->NextFrameIn());
        }
    }
    return next;
}

void NativeForm::Refresh() {
    Flush();
    RedrawWindow(Window(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void NativeForm::MirrorVisible() {
    const bool shown = (GetWindowLongPtrW(Window(), GWL_STYLE) & WS_VISIBLE) != 0;
    if (shown != form_.IsVisible()) {
        Flush();
        ShowWindow(Window(), form_.IsVisible() ? SW_SHOWNORMAL : SW_HIDE);
    }
}

}  // namespace marlok::win32
