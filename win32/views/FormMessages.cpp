#include "win32/views/FormMessages.h"

#include <windows.h>
// Behind windows.h, whose types it uses.
#include <dbt.h>

#include "win32/views/NativeLoop.h"

namespace marlok::win32 {

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

const wchar_t* FormMessages::WindowClass() {
    static const ATOM registered = [] {
        WNDCLASSEXW kind{};
        kind.cbSize = sizeof kind;
        kind.lpfnWndProc = &FormMessages::Procedure;
        kind.hInstance = GetModuleHandleW(nullptr);
        kind.hIcon = ProgramIcon(SM_CXICON, SM_CYICON);
        kind.hIconSm = ProgramIcon(SM_CXSMICON, SM_CYSMICON);
        kind.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        kind.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
        kind.lpszClassName = className;
        return RegisterClassExW(&kind);
    }();
    return registered != 0 ? className : L"";
}

FormMessages::~FormMessages() {
    SetWindowLongPtrW(parts_.window, GWLP_USERDATA, 0);
}

void FormMessages::Begin() {
    SetWindowLongPtrW(parts_.window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

LRESULT CALLBACK FormMessages::Procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    auto* const messages = reinterpret_cast<FormMessages*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    return messages == nullptr ? DefWindowProcW(window, message, first, second)
                               : messages->Handle(message, first, second);
}

LRESULT FormMessages::Handle(UINT message, WPARAM first, LPARAM second) {
    for (const auto kind :
         {&FormMessages::OfWindow, &FormMessages::OfSession, &FormMessages::OfPlace, &FormMessages::OfKeyboard,
          &FormMessages::OfControls, &FormMessages::OfPainting, &FormMessages::OfColours}) {
        if (const Answer answer = (this->*kind)(message, first, second)) {
            return *answer;
        }
    }
    return DefWindowProcW(parts_.window, message, first, second);
}

FormMessages::Answer FormMessages::OfWindow(UINT message, WPARAM, LPARAM) {
    switch (message) {
        case WM_CLOSE:
            close_();
            return 0;
        case WM_SETCURSOR:
            if (loop_.Hourglass()) {
                SetCursor(LoadCursorW(nullptr, IDC_WAIT));
                return TRUE;
            }
            return {};
        default:
            return {};
    }
}

FormMessages::Answer FormMessages::OfSession(UINT message, WPARAM first, LPARAM) {
    LRESULT answer = 0;
    return loop_.Session().Answer(message, first, answer) ? Answer(answer) : Answer();
}

FormMessages::Answer FormMessages::OfPlace(UINT message, WPARAM first, LPARAM second) {
    switch (message) {
        case WM_SIZE:
            parts_.backdrop.Resized();
            parts_.place.Take();
            return 0;
        case WM_MOVE:
            parts_.place.Take();
            return 0;
        case WM_DPICHANGED:
            ChangeResolution(HIWORD(first), *reinterpret_cast<const RECT*>(second));
            return 0;
        case WM_GETMINMAXINFO:
            parts_.place.LimitSize(*reinterpret_cast<MINMAXINFO*>(second));
            return 0;
        default:
            return {};
    }
}

void FormMessages::ChangeResolution(UINT dpi, const RECT& suggested) {
    parts_.place.ChangeResolution(dpi, suggested);
    parts_.controls.Adapt(parts_.window, dpi);
    parts_.backdrop.Changed();
    parts_.place.Take();
}

FormMessages::Answer FormMessages::OfKeyboard(UINT message, WPARAM first, LPARAM) {
    switch (message) {
        case WM_ACTIVATE:
            Activate(first);
            return 0;
        case WM_SETFOCUS:
            parts_.focus.Restore();
            return 0;
        case DM_GETDEFID:
            return parts_.keyboard.EnterButtonId();
        default:
            return {};
    }
}

void FormMessages::Activate(WPARAM first) {
    if (LOWORD(first) == WA_INACTIVE) {
        parts_.focus.Keep();
    } else if (HIWORD(first) == 0) {  // not minimised
        SetFocus(parts_.window);      // and from there to a control
    }
}

FormMessages::Answer FormMessages::OfControls(UINT message, WPARAM first, LPARAM second) {
    switch (message) {
        case WM_COMMAND:
            if (NativeControl* control = parts_.controls.FindByWindow(reinterpret_cast<HWND>(second))) {
                control->Notified(HIWORD(first));
            }
            return 0;
        case WM_NOTIFY: {
            const auto& notice = *reinterpret_cast<const NMHDR*>(second);
            NativeControl* control = parts_.controls.FindByWindow(notice.hwndFrom);
            return control == nullptr ? 0 : control->Told(notice);
        }
        case WM_DRAWITEM: {
            const auto& line = *reinterpret_cast<const DRAWITEMSTRUCT*>(second);
            NativeControl* control = parts_.controls.FindByWindow(line.hwndItem);
            return control != nullptr && control->DrawLine(line) ? Answer(TRUE) : Answer();
        }
        case WM_DEVICECHANGE:
            DevicesChanged(first);
            return TRUE;
        default:
            return {};
    }
}

void FormMessages::DevicesChanged(WPARAM first) {
    if (first == DBT_DEVICEARRIVAL || first == DBT_DEVICEREMOVECOMPLETE) {
        const NativeLoop::Notices notices(loop_);
        for (const auto& control : parts_.controls.All()) {
            control->PostDevicesChanged();
        }
    }
}

FormMessages::Answer FormMessages::OfPainting(UINT message, WPARAM first, LPARAM second) {
    switch (message) {
        case WM_ERASEBKGND:
            parts_.backdrop.Paint(reinterpret_cast<HDC>(first));
            return TRUE;
        case WM_PRINTCLIENT:
            parts_.backdrop.Print(reinterpret_cast<HDC>(first));
            return 0;
        case WM_SYSCOLORCHANGE:
            for (const auto& control : parts_.controls.All()) {
                SendMessageW(control->Window(), message, first, second);  // the system tells only the topmost windows
            }
            parts_.backdrop.ChangedWhole();
            return {};
        case WM_THEMECHANGED:
            parts_.backdrop.ChangedWhole();
            return {};
        default:
            return {};
    }
}

FormMessages::Answer FormMessages::OfColours(UINT message, WPARAM first, LPARAM second) {
    NativeControl* control =
        IsColourMessage(message) ? parts_.controls.FindByWindow(reinterpret_cast<HWND>(second)) : nullptr;
    HBRUSH brush = control == nullptr ? nullptr : parts_.backdrop.Colours(*control, reinterpret_cast<HDC>(first));
    return brush == nullptr ? Answer() : reinterpret_cast<LRESULT>(brush);
}

}  // namespace marlok::win32
