#include "win32/views/FormControls.h"

#include <windows.h>
// Behind windows.h, whose types it uses.
#include <commctrl.h>

#include <algorithm>
#include <new>
#include <utility>

#include "forms/Controls.h"
#include "win32/views/ControlFactory.h"
#include "win32/views/MessageFont.h"

namespace marlok::win32 {

namespace {

/// What the controls in a control tell their parent is for the form.
LRESULT CALLBACK ContainerProcedure(HWND window, UINT message, WPARAM first, LPARAM second, UINT_PTR id,
                                    DWORD_PTR form) {
    if (message == WM_COMMAND || message == WM_NOTIFY || IsColourMessage(message)) {
        return SendMessageW(reinterpret_cast<HWND>(form), message, first, second);
    }
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(window, &ContainerProcedure, id);
    }
    return DefSubclassProc(window, message, first, second);
}

/// Makes a control's window fit for holding others. May be called again.
void MakeContainer(HWND window, HWND form) {
    const LONG_PTR style = GetWindowLongPtrW(window, GWL_STYLE);
    const LONG_PTR extended = GetWindowLongPtrW(window, GWL_EXSTYLE);
    SetWindowLongPtrW(window, GWL_STYLE, style | WS_CLIPCHILDREN);
    SetWindowLongPtrW(window, GWL_EXSTYLE, extended | WS_EX_CONTROLPARENT);
    if (SetWindowSubclass(window, &ContainerProcedure, 1, reinterpret_cast<DWORD_PTR>(form)) == 0) {
        throw std::bad_alloc();
    }
}

}  // namespace

void FormControls::Adapt(HWND window, UINT dpi) {
    const FontHandle old = std::exchange(font_, MakeFont({}, dpi));  // in use until the controls have the new one
    ground_ = {window, nullptr, font_.Get(), dpi};
    for (const auto& control : controls_) {
        control->Adapt(SiteOf(control->Model()));
    }
}

NativeControl* FormControls::Create(const forms::Control& control) {
    const auto& all = form_.Controls();
    const auto found = std::find(all.begin(), all.end(), &control);
    auto made = found == all.end() ? nullptr : MakeNativeControl(**found, post_);
    if (!made) {
        return nullptr;
    }
    NativeControl& native = *made;
    controls_.push_back(std::move(made));  // first: it asks for its colours while it is being created
    try {
        const Site site = SiteOf(control);
        native.Create(site, nextId_++, Above(native, site.parent));
    } catch (...) {
        controls_.pop_back();
        throw;
    }
    return &native;
}

void FormControls::Rehome(NativeControl& native) const {
    const Site site = SiteOf(native.Model());
    if (site.parent != GetParent(native.Window())) {
        native.MoveInto(site, Above(native, site.parent));
    }
}

void FormControls::Remove(const forms::Control& control) {
    const auto found = std::find_if(controls_.begin(), controls_.end(),
                                    [&control](const auto& native) { return &native->Model() == &control; });
    if (found == controls_.end()) {
        return;
    }
    for (const auto& inner : controls_) {
        if (GetParent(inner->Window()) == (*found)->Window()) {
            SetParent(inner->Window(), ground_.parent);  // it would be destroyed with this one behind its owner's back
        }
    }
    const std::unique_ptr<NativeControl> gone = std::move(*found);
    controls_.erase(found);  // first: what the window says while it goes must not find it any more
}

/// The sibling right above a control, null for none. From the top come the controls in the order of the form, so that
/// one that is shown late still takes its place in it; below them what others lie in, the inner above the outer.
HWND FormControls::Above(const NativeControl& control, HWND parent) const {
    const auto depth = [this](const NativeControl& native) {
        const auto& all = form_.Controls();
        const auto place = static_cast<int>(std::find(all.begin(), all.end(), &native.Model()) - all.begin());
        const auto layer = static_cast<int>(native.Place());
        return std::pair(layer, native.Place() == NativeControl::Layer::front ? place : -place);
    };
    const NativeControl* lowest = nullptr;
    for (const NativeControl* other : InOrder()) {
        const bool above = other != &control && depth(*other) < depth(control);
        if (above && GetParent(other->Window()) == parent && (lowest == nullptr || depth(*lowest) < depth(*other))) {
            lowest = other;
        }
    }
    return lowest == nullptr ? nullptr : lowest->Window();
}

/// Of all that a control may lie in, only a picture takes it into its window: frames are drawn behind their controls.
Site FormControls::SiteOf(const forms::Control& control) const {
    Site site = ground_;
    for (const forms::Control* around = control.Container(); around != nullptr; around = around->Container()) {
        const NativeControl* native = Find(*around);
        const bool picture = dynamic_cast<const forms::PictureBox*>(around) != nullptr;
        if (picture && native != nullptr) {
            MakeContainer(native->Window(), ground_.parent);
            site.parent = native->Window();
            site.container = around;
            return site;
        }
    }
    return site;
}

std::vector<NativeControl*> FormControls::InOrder() const {
    std::vector<NativeControl*> order;
    for (const forms::Control* control : form_.Controls()) {
        if (NativeControl* native = Find(*control)) {
            order.push_back(native);
        }
    }
    return order;
}

NativeControl* FormControls::Find(const forms::Control& control) const {
    const auto found = std::find_if(controls_.begin(), controls_.end(),
                                    [&control](const auto& native) { return &native->Model() == &control; });
    return found == controls_.end() || (*found)->Window() == nullptr ? nullptr : found->get();
}

NativeControl* FormControls::FindByWindow(HWND window) const {
    const auto found = std::find_if(controls_.begin(), controls_.end(),
                                    [window](const auto& native) { return native->Window() == window; });
    return window == nullptr || found == controls_.end() ? nullptr : found->get();
}

NativeControl* FormControls::FindAround(HWND window) const {
    for (HWND at = window; at != nullptr && at != ground_.parent; at = GetParent(at)) {
        if (NativeControl* found = FindByWindow(at)) {
            return found;
        }
    }
    return nullptr;
}

}  // namespace marlok::win32
