#include "win32/views/NativeForm.h"

#include <windows.h>
// Behind windows.h, whose types they use.
#include <commctrl.h>
#include <dbt.h>

#include <algorithm>
#include <system_error>
#include <utility>

#include "forms/TabControl.h"
#include "win32/machine/Wide.h"
#include "win32/views/Twips.h"
#include "win32/views/WindowText.h"

namespace marlok::win32 {

using forms::Aspect;

namespace {

constexpr const wchar_t* className = L"MarlokWindow";
/// The program's icon in its resources.
constexpr WORD iconId = 1;

HICON ProgramIcon(int widthMetric, int heightMetric) {
    auto* const icon =
        static_cast<HICON>(LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(iconId), IMAGE_ICON,
                                      GetSystemMetrics(widthMetric), GetSystemMetrics(heightMetric), LR_SHARED));
    return icon != nullptr ? icon : LoadIconW(nullptr, IDI_APPLICATION);
}

}  // namespace

NativeForm::NativeForm(forms::Form& form, NativeLoop& loop)
    : form_(form),
      loop_(loop),
      window_(CreateHidden(form)),
      place_(form, Window(), loop),
      controls_(form, Poster()),
      focus_(Window(), controls_),
      keyboard_(form, Window(), controls_, focus_, Poster()),
      backdrop_(form, Window(), controls_) {
    controls_.Adapt(Window(), place_.Dpi());
    place_.CutToScreen();
    place_.Mirror();
    CreateControls();
    // From here on nothing throws, and the window may call: until now it belonged to the system alone.
    SetWindowLongPtrW(Window(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    loop_.Add(*this);
}

NativeForm::~NativeForm() {
    // The form's controls are gone already: nothing that the window says while it is destroyed reaches this object.
    SetWindowLongPtrW(Window(), GWLP_USERDATA, 0);
    loop_.Remove(*this);
}

const wchar_t* NativeForm::WindowClass() {
    static const ATOM registered = [] {
        WNDCLASSEXW kind{};
        kind.cbSize = sizeof kind;
        kind.lpfnWndProc = &NativeForm::Procedure;
        kind.hInstance = GetModuleHandleW(nullptr);
        kind.hIcon = ProgramIcon(SM_CXICON, SM_CYICON);
        kind.hIconSm = ProgramIcon(SM_CXSMICON, SM_CYSMICON);
        kind.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        kind.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
        kind.lpszClassName = className;
        return RegisterClassExW(&kind);
    }();
    return registered != 0 ? className : L"";  // creating a window of class "" fails with a code of its own
}

WindowHandle NativeForm::CreateHidden(const forms::Form& form) {
    const UINT dpi = GetDpiForSystem();
    WindowHandle window(CreateWindowExW(0, WindowClass(), ToWide(form.Caption()).c_str(), formStyle,
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

void NativeForm::ChangeResolution(UINT dpi, const RECT& suggested) {
    place_.ChangeResolution(dpi, suggested);
    controls_.Adapt(Window(), dpi);
    backdrop_.Changed();
    place_.Take();
}

LRESULT CALLBACK NativeForm::Procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    auto* const form = reinterpret_cast<NativeForm*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (form == nullptr) {
        return DefWindowProcW(window, message, first, second);
    }
    return form->Handle(message, first, second);
}

LRESULT NativeForm::Handle(UINT message, WPARAM first, LPARAM second) {
    switch (message) {
        case WM_COMMAND:
            OnCommand(first, second);
            return 0;
        case WM_CLOSE:
            OnClose();
            return 0;
        case WM_NOTIFY:
            return OnNotify(*reinterpret_cast<const NMHDR*>(second));
        case WM_SIZE:
            backdrop_.Resized();
            [[fallthrough]];
        case WM_MOVE:
            place_.Take();
            return 0;
        case WM_DPICHANGED:
            ChangeResolution(HIWORD(first), *reinterpret_cast<const RECT*>(second));
            return 0;
        case WM_GETMINMAXINFO:
            place_.LimitSize(*reinterpret_cast<MINMAXINFO*>(second));
            return 0;
        case WM_DEVICECHANGE:
            OnDeviceChange(first);
            return TRUE;
        case WM_ACTIVATE:
            OnActivate(first);
            return 0;
        case WM_SETFOCUS:
            focus_.Restore();
            return 0;
        case WM_SETCURSOR:
            if (loop_.Hourglass()) {
                SetCursor(LoadCursorW(nullptr, IDC_WAIT));
                return TRUE;
            }
            break;
        case DM_GETDEFID:
            return keyboard_.EnterButtonId();
        default:
            break;
    }
    LRESULT answer = 0;
    if (HandlePainting(message, first, second, answer)) {
        return answer;
    }
    return DefWindowProcW(Window(), message, first, second);
}

bool NativeForm::HandlePainting(UINT message, WPARAM first, LPARAM second, LRESULT& answer) {
    auto* const surface = reinterpret_cast<HDC>(first);
    if (IsColourMessage(message)) {
        NativeControl* control = controls_.FindByWindow(reinterpret_cast<HWND>(second));
        answer = control == nullptr ? 0 : reinterpret_cast<LRESULT>(backdrop_.Colours(*control, surface));
        return answer != 0;
    }
    switch (message) {
        case WM_ERASEBKGND:
            backdrop_.Paint(surface);
            answer = TRUE;
            return true;
        case WM_PRINTCLIENT:
            backdrop_.Print(surface);
            return true;
        case WM_DRAWITEM: {
            const auto& line = *reinterpret_cast<const DRAWITEMSTRUCT*>(second);
            NativeControl* control = controls_.FindByWindow(line.hwndItem);
            answer = TRUE;
            return control != nullptr && control->DrawLine(line);
        }
        case WM_SYSCOLORCHANGE:
            for (const auto& control : controls_.All()) {
                SendMessageW(control->Window(), message, first, second);  // the system tells only the topmost windows
            }
            [[fallthrough]];
        case WM_THEMECHANGED:
            backdrop_.ChangedWhole();
            return false;
        default:
            return false;
    }
}

void NativeForm::OnCommand(WPARAM first, LPARAM second) {
    if (NativeControl* control = controls_.FindByWindow(reinterpret_cast<HWND>(second))) {
        control->Notified(HIWORD(first));
    }
}

LRESULT NativeForm::OnNotify(const NMHDR& notice) {
    NativeControl* control = controls_.FindByWindow(notice.hwndFrom);
    return control == nullptr ? 0 : control->Told(notice);
}

void NativeForm::OnDeviceChange(WPARAM first) {
    if (first == DBT_DEVICEARRIVAL || first == DBT_DEVICEREMOVECOMPLETE) {
        for (const auto& control : controls_.All()) {
            control->PostDevicesChanged();
        }
    }
}

void NativeForm::OnClose() {
    loop_.Post(*this, [this] { form_.Unload(); });
}

void NativeForm::OnActivate(WPARAM first) {
    if (LOWORD(first) == WA_INACTIVE) {
        focus_.Keep();
    } else if (HIWORD(first) == 0) {  // not minimised
        SetFocus(Window());           // and from there to a control
    }
}

}  // namespace marlok::win32
