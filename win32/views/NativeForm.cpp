#include "win32/views/NativeForm.h"

#include <windows.h>
// Behind windows.h, whose types they use.
#include <commctrl.h>
#include <dbt.h>

#include <algorithm>
#include <cstddef>
#include <system_error>
#include <utility>

#include "forms/Controls.h"
#include "win32/machine/Wide.h"
#include "win32/views/MessageFont.h"
#include "win32/views/WorkArea.h"

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

/// Size of the area of a screen that programs may use: of the screen that `place` is on or next to.
SIZE WorkSize(const RECT& place) {
    MONITORINFO screen{};
    screen.cbSize = sizeof screen;
    if (GetMonitorInfoW(MonitorFromRect(&place, MONITOR_DEFAULTTONEAREST), &screen) == 0) {
        return {GetSystemMetrics(SM_CXMAXTRACK), GetSystemMetrics(SM_CYMAXTRACK)};  // the screen was just taken away
    }
    return {screen.rcWork.right - screen.rcWork.left, screen.rcWork.bottom - screen.rcWork.top};
}

bool IsColourMessage(UINT message) {
    return message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC;
}

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

void SetButtonKind(HWND button, LONG_PTR kind) {
    const LONG_PTR others = GetWindowLongPtrW(button, GWL_STYLE) & 0xFFFF & ~LONG_PTR{BS_TYPEMASK};
    SendMessageW(button, BM_SETSTYLE, static_cast<WPARAM>(others | kind), TRUE);
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

NativeForm::NativeForm(forms::Form& form, NativeLoop& loop)
    : form_(form), loop_(loop), shownRows_(form.Backdrop()), nextId_(firstControlId) {
    CreateHidden();
    LoadFont();
    CutToScreen();
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
    if (shownRows_ != form_.Backdrop()) {
        shownRows_ = form_.Backdrop();
        ShowBackdrop();
        InvalidateRect(Window(), nullptr, TRUE);
    }
    if (!mirroring_) {
        MirrorPlace();
    }
    MirrorVisible();
}

void NativeForm::ControlChanged(const forms::Control& control, Aspect aspect) {
    NativeControl* native = Find(control);
    if (native == nullptr && control.IsShown()) {
        native = Make(control);
    }
    const bool created = native != nullptr && native->Window() == nullptr && control.IsShown();
    if (created) {
        CreateControl(*native);
    } else if (native != nullptr && native->Window() != nullptr) {
        MirrorControl(*native, aspect);
    }
    if (created || aspect == Aspect::visible) {
        MirrorControlsIn(control, Aspect::visible);
    } else if (aspect == Aspect::place || aspect == Aspect::container) {
        MirrorControlsIn(control, Aspect::place);
    }
}

void NativeForm::MirrorControl(NativeControl& native, Aspect aspect) {
    const forms::Control& control = native.Model();
    if (native.Place() == NativeControl::Layer::tabs && aspect == Aspect::selection) {
        keyboard_.LeavePage(native);
    }
    if (!control.IsShown() || !control.Enabled) {
        keyboard_.Leave(native);
    }
    if (aspect == Aspect::visible || aspect == Aspect::container) {
        const Site site = SiteOf(control);
        if (site.parent != GetParent(native.Window())) {
            native.MoveInto(site, Above(native, site.parent));
        }
    }
    native.Changed(aspect);
    if (Backdrop::IsGround(native)) {
        ShowBackdrop();
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
    std::erase(withoutWindow_, &control);
    const auto found = std::find_if(controls_.begin(), controls_.end(),
                                    [&control](const auto& native) { return &native->Model() == &control; });
    if (found == controls_.end()) {
        return;
    }
    if (HWND window = (*found)->Window()) {
        keyboard_.Leave(**found);
        keyboard_.Forget(**found);
        backdrop_.Forget();
        lastFocus_ = lastFocus_ == window ? nullptr : lastFocus_;
        enterButton_ = enterButton_ == window ? nullptr : enterButton_;
        for (const auto& inner : controls_) {
            if (inner->Window() != nullptr && GetParent(inner->Window()) == window) {
                SetParent(inner->Window(), Window());  // it would be destroyed with this one behind its owner's back
            }
        }
    }
    const std::unique_ptr<NativeControl> gone = std::move(*found);
    controls_.erase(found);  // first: what the window says while it goes must not find it any more
}

/// The native side of a control of the form that was not shown before; null when its kind has none.
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

void NativeForm::CreateControl(NativeControl& control) {
    const Site site = SiteOf(control.Model());
    control.Create(site, nextId_++, Above(control, site.parent));
    if (Backdrop::IsGround(control)) {
        ShowBackdrop();
    }
}

/// The sibling right above a control, null for none. From the top come the controls in the order of the form, so that
/// one that is shown late still takes its place in it; below them what others lie in, the inner above the outer.
HWND NativeForm::Above(const NativeControl& control, HWND parent) const {
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
Site NativeForm::SiteOf(const forms::Control& control) const {
    for (const forms::Control* around = control.Container(); around != nullptr; around = around->Container()) {
        const NativeControl* native = Find(*around);
        const bool picture = dynamic_cast<const forms::PictureBox*>(around) != nullptr;
        if (picture && native != nullptr && native->Window() != nullptr) {
            MakeContainer(native->Window(), Window());
            return {native->Window(), around, font_.Get(), dpi_};
        }
    }
    return {Window(), nullptr, font_.Get(), dpi_};
}

std::vector<NativeControl*> NativeForm::InOrder() const {
    std::vector<NativeControl*> order;
    for (const forms::Control* control : form_.Controls()) {
        NativeControl* native = Find(*control);
        if (native != nullptr && native->Window() != nullptr) {
            order.push_back(native);
        }
    }
    return order;
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

NativeControl* NativeForm::FindAround(HWND window) const {
    for (HWND at = window; at != nullptr && at != Window(); at = GetParent(at)) {
        if (NativeControl* found = FindByWindow(at)) {
            return found;
        }
    }
    return nullptr;
}

void NativeForm::Flush() {
    for (const auto& control : controls_) {
        if (control->Window() != nullptr) {
            control->Flush();
        }
    }
    keyboard_.Settle();
    MirrorEnterButton();
}

void NativeForm::MirrorEnterButton() {
    const NativeControl* button = keyboard_.EnterButton(GetFocus());
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

void NativeForm::Animate() {
    if (!form_.IsVisible()) {
        return;
    }
    for (const auto& control : controls_) {
        if (control->Window() != nullptr && control->Model().IsShown()) {
            control->Animate();
        }
    }
}

std::uint32_t NativeForm::NextFrameIn() const {
    std::uint32_t next = NativeControl::never;
    for (const auto& control : controls_) {
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

/// The form keeps its corner if what is left of it is on the screen then.
void NativeForm::CutToScreen() {
    const RECT wanted = OuterPlace();
    const SIZE work = WorkSize(wanted);
    const LONG width = std::min(wanted.right - wanted.left, work.cx);
    const LONG height = std::min(wanted.bottom - wanted.top, work.cy);
    if (width == wanted.right - wanted.left && height == wanted.bottom - wanted.top) {
        return;
    }
    const RECT place = MovedOntoWorkArea({wanted.left, wanted.top, wanted.left + width, wanted.top + height});
    {
        const While echo(mirroring_);
        SetWindowPos(Window(), nullptr, place.left, place.top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
    }
    TakePlace();
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
        control->Adapt(SiteOf(control->Model()));
    }
    ShowBackdrop();
    TakePlace();
}

void NativeForm::LoadFont() {
    font_ = MakeFont({}, dpi_);
}

void NativeForm::LimitSize(MINMAXINFO& limits) const {
    RECT least{0, 0, ToPixels(form_.LeastWidth(), dpi_), ToPixels(form_.LeastHeight(), dpi_)};
    AdjustWindowRectExForDpi(&least, windowStyle, FALSE, 0, dpi_);
    RECT place{};
    GetWindowRect(Window(), &place);
    const SIZE work = WorkSize(place);
    POINT& limit = limits.ptMinTrackSize;
    if (form_.LeastWidth() > 0) {
        limit.x = std::max(limit.x, std::min(least.right - least.left, work.cx));
    }
    if (form_.LeastHeight() > 0) {
        limit.y = std::max(limit.y, std::min(least.bottom - least.top, work.cy));
    }
}

/// Has all controls painted anew that show what lies behind them.
void NativeForm::ShowBackdrop() {
    backdrop_.Forget();
    for (const auto& control : controls_) {
        if (control->Window() != nullptr && control->IsTransparent()) {
            RedrawWindow(control->Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_NOCHILDREN);
        }
    }
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
            if (!form_.Backdrop().empty()) {
                ShowBackdrop();  // every row is at another height
                InvalidateRect(Window(), nullptr, TRUE);
            }
            [[fallthrough]];
        case WM_MOVE:
            TakePlace();
            return 0;
        case WM_DPICHANGED:
            ChangeResolution(HIWORD(first), *reinterpret_cast<const RECT*>(second));
            return 0;
        case WM_GETMINMAXINFO:
            LimitSize(*reinterpret_cast<MINMAXINFO*>(second));
            return 0;
        case WM_DEVICECHANGE:
            OnDeviceChange(first);
            return TRUE;
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
            return EnterButtonId();
        default:
            break;
    }
    LRESULT answer = 0;
    if (loop_.Session().Answer(message, first, answer) || HandlePainting(message, first, second, answer)) {
        return answer;
    }
    return DefWindowProcW(Window(), message, first, second);
}

bool NativeForm::HandlePainting(UINT message, WPARAM first, LPARAM second, LRESULT& answer) {
    auto* const surface = reinterpret_cast<HDC>(first);
    if (IsColourMessage(message)) {
        NativeControl* control = FindByWindow(reinterpret_cast<HWND>(second));
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
            NativeControl* control = FindByWindow(line.hwndItem);
            answer = TRUE;
            return control != nullptr && control->DrawLine(line);
        }
        case WM_SYSCOLORCHANGE:
            for (const auto& control : controls_) {
                SendMessageW(control->Window(), message, first, second);  // the system tells only the topmost windows
            }
            [[fallthrough]];
        case WM_THEMECHANGED:
            ShowBackdrop();
            InvalidateRect(Window(), nullptr, TRUE);
            return false;
        default:
            return false;
    }
}

void NativeForm::OnCommand(WPARAM first, LPARAM second) {
    if (NativeControl* control = FindByWindow(reinterpret_cast<HWND>(second))) {
        control->Notified(HIWORD(first));
    }
}

LRESULT NativeForm::OnNotify(const NMHDR& notice) {
    NativeControl* control = FindByWindow(notice.hwndFrom);
    return control == nullptr ? 0 : control->Told(notice);
}

void NativeForm::OnDeviceChange(WPARAM first) {
    if (first == DBT_DEVICEARRIVAL || first == DBT_DEVICEREMOVECOMPLETE) {
        const NativeLoop::Notices notices(loop_);
        for (const auto& control : controls_) {
            control->PostDevicesChanged();
        }
    }
}

void NativeForm::OnClose() {
    loop_.Post(*this, [this] { form_.UserClosed(); });
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
        const NativeControl* first = keyboard_.First();
        wanted = first == nullptr ? nullptr : first->Window();
    }
    if (wanted != nullptr) {
        SetFocus(wanted);
    }
}

LRESULT NativeForm::EnterButtonId() const {
    const NativeControl* button = keyboard_.EnterButton(GetFocus());
    return button == nullptr ? 0 : MAKELRESULT(GetDlgCtrlID(button->Window()), DC_HASDEFID);
}

}  // namespace marlok::win32
