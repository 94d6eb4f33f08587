#include "platform/win32/NativeForm.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "platform/win32/Wide.h"

namespace marlok::win32 {

using forms::Aspect;

namespace {

constexpr const wchar_t* className = L"MarlokWindow";
constexpr DWORD windowStyle = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;

/// Identifiers of controls start beyond those that Windows gives a meaning (1: Enter, 2: Escape).
constexpr int firstControlId = 1000;

/// The program's icon in its resources.
constexpr WORD iconId = 1;

HICON ProgramIcon(int widthMetric, int heightMetric) {
    auto* const icon =
        static_cast<HICON>(LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(iconId), IMAGE_ICON,
                                      GetSystemMetrics(widthMetric), GetSystemMetrics(heightMetric), LR_SHARED));
    return icon != nullptr ? icon : LoadIconW(nullptr, IDI_APPLICATION);
}

/// Sets a flag for as long as it lives.
class While {
 public:
    explicit While(bool& flag) : flag_(flag) { flag_ = true; }
    While(const While&) = delete;
    While& operator=(const While&) = delete;
    ~While() { flag_ = false; }

 private:
    bool& flag_;
};

}  // namespace

NativeForm::NativeForm(forms::Form& form, NativeLoop& loop) : form_(form), loop_(loop) {
    CreateHidden();
    LoadFont();
    MirrorPlace();
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

void NativeForm::CreateHidden() {
    const UINT dpi = GetDpiForSystem();
    window_.Reset(CreateWindowExW(0, WindowClass(), ToWide(form_.Caption()).c_str(), windowStyle,
                                  ToPixels(form_.Left(), dpi), ToPixels(form_.Top(), dpi), 0, 0, nullptr, nullptr,
                                  GetModuleHandleW(nullptr), nullptr));
    if (!window_.IsValid()) {
        throw std::system_error(static_cast<int>(LastError()), std::system_category(),
                                "window " + form_.Name() + " cannot be shown");
    }
    dpi_ = GetDpiForWindow(Window());
}

void NativeForm::CreateControls() {
    for (forms::Control* control : form_.Controls()) {
        if (control->Visible) {
            ControlChanged(*control, Aspect::visible);
        }
    }
}

void NativeForm::FormChanged() {
    const std::wstring caption = ToWide(form_.Caption());
    if (WindowText(Window()) != caption) {
        SetWindowTextW(Window(), caption.c_str());
    }
    if (!mirroring_) {
        MirrorPlace();
    }
    MirrorVisible();
}

void NativeForm::ControlChanged(const forms::Control& control, Aspect aspect) {
    NativeControl* native = Find(control);
    if (native == nullptr && control.Visible) {
        native = Make(control);
    }
    if (native == nullptr) {
        return;
    }
    if (native->Window() == nullptr && control.Visible) {
        CreateControl(*native);
    } else {
        native->Changed(aspect);
    }
}

/// The native side of a control of the form that was not visible before; null when its kind has none.
NativeControl* NativeForm::Make(const forms::Control& control) {
    const auto& all = form_.Controls();
    const auto found = std::find(all.begin(), all.end(), &control);
    const bool known = std::find(withoutWindow_.begin(), withoutWindow_.end(), &control) != withoutWindow_.end();
    if (found == all.end() || known) {
        return nullptr;
    }
    auto made = NativeControl::For(**found, [this](NativeLoop::Action action) { Post(std::move(action)); });
    if (!made) {
        withoutWindow_.push_back(&control);
        return nullptr;
    }
    controls_.push_back(std::move(made));
    return controls_.back().get();
}

void NativeForm::Post(NativeLoop::Action action) {
    loop_.Post(*this, [this, run = std::move(action)] {
        if (form_.IsVisible()) {  // it may have been hidden or unloaded by an action before this one
            run();
        }
    });
}

/// A control that is shown late still takes its place in the tab order, which is the order of the form's controls.
void NativeForm::CreateControl(NativeControl& control) {
    HWND previous = nullptr;
    for (const forms::Control* other : form_.Controls()) {
        if (other == &control.Model()) {
            break;
        }
        const NativeControl* native = Find(*other);
        if (native != nullptr && native->Window() != nullptr) {
            previous = native->Window();
        }
    }
    const auto place = std::find_if(controls_.begin(), controls_.end(),
                                    [&control](const auto& native) { return native.get() == &control; });
    control.Create(CurrentSite(), firstControlId + static_cast<int>(place - controls_.begin()), previous);
}

NativeControl* NativeForm::Find(const forms::Control& control) const {
    const auto found = std::find_if(controls_.begin(), controls_.end(),
                                    [&control](const auto& native) { return &native->Model() == &control; });
    return found == controls_.end() ? nullptr : found->get();
}

NativeControl* NativeForm::FindByWindow(HWND window) const {
    const auto found = std::find_if(controls_.begin(), controls_.end(),
                                    [window](const auto& native) { return native->Window() == window; });
    return window == nullptr || found == controls_.end() ? nullptr : found->get();
}

void NativeForm::Flush() {
    for (const auto& control : controls_) {
        if (control->Window() != nullptr) {
            control->Flush();
        }
    }
}

void NativeForm::Refresh() {
    Flush();
    RedrawWindow(Window(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

RECT NativeForm::OuterPlace() const {
    const UINT systemDpi = GetDpiForSystem();
    RECT place{};
    place.right = ToPixels(form_.Width(), dpi_);
    place.bottom = ToPixels(form_.Height(), dpi_);
    AdjustWindowRectExForDpi(&place, windowStyle, FALSE, 0, dpi_);
    OffsetRect(&place, ToPixels(form_.Left(), systemDpi) - place.left, ToPixels(form_.Top(), systemDpi) - place.top);
    return place;
}

void NativeForm::MirrorPlace() {
    const RECT wanted = OuterPlace();
    RECT shown{};
    GetWindowRect(Window(), &shown);
    if (EqualRect(&wanted, &shown) != 0) {
        return;
    }
    {
        const While echo(mirroring_);
        SetWindowPos(Window(), nullptr, wanted.left, wanted.top, wanted.right - wanted.left, wanted.bottom - wanted.top,
                     SWP_NOZORDER | SWP_NOACTIVATE);
    }
    TakePlace();  // the system may have cut what is larger than the screen
}

void NativeForm::MirrorVisible() {
    const bool shown = (GetWindowLongPtrW(Window(), GWL_STYLE) & WS_VISIBLE) != 0;
    if (shown != form_.IsVisible()) {
        Flush();
        ShowWindow(Window(), form_.IsVisible() ? SW_SHOWNORMAL : SW_HIDE);
    }
}

/// Tells the form where its window is and how large, when that is news.
void NativeForm::TakePlace() {
    if (mirroring_ || IsIconic(Window()) != 0) {
        return;
    }
    const RECT wanted = OuterPlace();
    RECT outer{};
    GetWindowRect(Window(), &outer);
    const bool moved = outer.left != wanted.left || outer.top != wanted.top;
    RECT inner{};
    GetClientRect(Window(), &inner);
    const bool sized = inner.right != ToPixels(form_.Width(), dpi_) || inner.bottom != ToPixels(form_.Height(), dpi_);
    if (!moved && !sized) {
        return;
    }
    const UINT systemDpi = GetDpiForSystem();
    const While echo(mirroring_);
    form_.Place(moved ? ToTwips(outer.left, systemDpi) : form_.Left(),
                moved ? ToTwips(outer.top, systemDpi) : form_.Top(), sized ? ToTwips(inner.right, dpi_) : form_.Width(),
                sized ? ToTwips(inner.bottom, dpi_) : form_.Height());
    if (sized) {
        try {
            form_.Form_Resize();
        } catch (...) {
            loop_.Keep(std::current_exception());
        }
    }
}

/// The window came to a screen of another resolution: the same twips are other pixels there.
void NativeForm::ChangeResolution(UINT dpi, const RECT& suggested) {
    dpi_ = dpi;
    FontHandle old = std::move(font_);  // in use until the controls have the new one
    LoadFont();
    {
        const While echo(mirroring_);
        SetWindowPos(Window(), nullptr, suggested.left, suggested.top, suggested.right - suggested.left,
                     suggested.bottom - suggested.top, SWP_NOZORDER | SWP_NOACTIVATE);
    }
    for (const auto& control : controls_) {
        control->Adapt(CurrentSite());
    }
    TakePlace();
}

void NativeForm::LoadFont() {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    if (SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, dpi_) != 0) {
        font_.Reset(CreateFontIndirectW(&metrics.lfMessageFont));
    }
    // Without a font of its own a control draws in the system's old fixed one, which is still readable.
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
        case WM_SIZE:
        case WM_MOVE:
            TakePlace();
            return 0;
        case WM_DPICHANGED:
            ChangeResolution(HIWORD(first), *reinterpret_cast<const RECT*>(second));
            return 0;
        case WM_ACTIVATE:
            OnActivate(first);
            return 0;
        case WM_SETFOCUS:
            OnFocus();
            return 0;
        case WM_SETCURSOR:
            if (loop_.Hourglass()) {
                SetCursor(LoadCursorW(nullptr, IDC_WAIT));
                return TRUE;
            }
            break;
        case DM_GETDEFID:
            return DefaultButton();
        default:
            break;
    }
    return DefWindowProcW(Window(), message, first, second);
}

void NativeForm::OnCommand(WPARAM first, LPARAM second) {
    if (NativeControl* control = FindByWindow(reinterpret_cast<HWND>(second))) {
        control->Notified(HIWORD(first));
    }
}

void NativeForm::OnClose() {
    loop_.Post(*this, [this] { form_.Unload(); });
}

void NativeForm::OnActivate(WPARAM first) {
    if (LOWORD(first) == WA_INACTIVE) {
        HWND focus = GetFocus();
        lastFocus_ = focus != nullptr && IsChild(Window(), focus) != 0 ? focus : nullptr;
    } else if (HIWORD(first) == 0) {  // not minimised
        SetFocus(Window());           // and from there to a control
    }
}

void NativeForm::OnFocus() {
    HWND wanted = lastFocus_;
    if (wanted == nullptr || IsWindowVisible(wanted) == 0 || IsWindowEnabled(wanted) == 0) {
        wanted = GetNextDlgTabItem(Window(), nullptr, FALSE);
    }
    if (wanted != nullptr) {
        SetFocus(wanted);
    }
}

/// Enter presses the button that has the keyboard.
LRESULT NativeForm::DefaultButton() const {
    HWND focus = GetFocus();
    const bool button = focus != nullptr && (SendMessageW(focus, WM_GETDLGCODE, 0, 0) & DLGC_BUTTON) != 0;
    return button ? MAKELRESULT(GetDlgCtrlID(focus), DC_HASDEFID) : 0;
}

}  // namespace marlok::win32
