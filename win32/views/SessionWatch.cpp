#include "win32/views/SessionWatch.h"

namespace marlok::win32 {

namespace {

constexpr const wchar_t* className = L"MarlokSession";

}  // namespace

SessionWatch::~SessionWatch() {
    if (hidden_.IsValid()) {
        SetWindowLongPtrW(hidden_.Get(), GWLP_USERDATA, 0);
    }
}

void SessionWatch::Block(const std::wstring& reason, const std::vector<HWND>& windows) {
    blocked_ = true;
    reason_ = reason;
    if (!hidden_.IsValid()) {
        MakeHidden();
    }
    Add(hidden_.Get());
    for (HWND window : windows) {
        Add(window);
    }
}

void SessionWatch::Allow(const std::vector<HWND>& windows) {
    if (!blocked_) {
        return;
    }
    blocked_ = false;
    reason_.clear();
    for (HWND window : windows) {
        ShutdownBlockReasonDestroy(window);
    }
    hidden_.Reset();  // its reason goes with it
}

void SessionWatch::Add(HWND window) const {
    // A system without such reasons takes the answer alone for one.
    if (blocked_ && window != nullptr) {
        ShutdownBlockReasonCreate(window, reason_.c_str());
    }
}

bool SessionWatch::Answer(UINT message, WPARAM first, LRESULT& answer) {
    switch (message) {
        case WM_QUERYENDSESSION:
            ending_ = true;
            answer = blocked_ ? FALSE : TRUE;
            return true;
        case WM_ENDSESSION:
            ending_ = first != FALSE;  // called off otherwise: by the user, or by another program
            answer = 0;
            return true;
        default:
            return false;
    }
}

LRESULT CALLBACK SessionWatch::Procedure(HWND window, UINT message, WPARAM first, LPARAM second) noexcept {
    auto* const self = reinterpret_cast<SessionWatch*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    LRESULT answer = 0;
    if (self != nullptr && self->Answer(message, first, answer)) {
        return answer;
    }
    if (message == WM_CLOSE) {
        return 0;  // whoever closes all windows of the program does not mean this one
    }
    return DefWindowProcW(window, message, first, second);
}

/// A window that only receives messages would not be asked. Where none can be made, there is no session to hold up.
void SessionWatch::MakeHidden() {
    WNDCLASSEXW kind{};
    kind.cbSize = sizeof kind;
    kind.lpfnWndProc = &SessionWatch::Procedure;
    kind.hInstance = GetModuleHandleW(nullptr);
    kind.lpszClassName = className;
    static_cast<void>(RegisterClassExW(&kind));  // registered already from the second time on
    hidden_.Reset(CreateWindowExW(WS_EX_TOOLWINDOW, className, L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                                  GetModuleHandleW(nullptr), nullptr));
    if (hidden_.IsValid()) {
        SetWindowLongPtrW(hidden_.Get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }
}

}  // namespace marlok::win32
