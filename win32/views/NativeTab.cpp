#include "win32/views/NativeTab.h"

#include <windows.h>
// Behind windows.h, whose types it uses.
#include <commctrl.h>

#include "win32/machine/Wide.h"
#include "win32/views/Canvas.h"

namespace marlok::win32 {

using forms::Aspect;

namespace {

/// How much of a disabled tab's own drawing is covered, of 255.
constexpr BYTE greyness = 150;

}  // namespace

NativeControl::WindowKind NativeTab::Kind() const {
    // It must not paint over the controls on it, which stand in front of it.
    return {WC_TABCONTROLW, WS_CLIPSIBLINGS | WS_TABSTOP | TCS_SINGLELINE | TCS_FOCUSONBUTTONDOWN, 0, true};
}

void NativeTab::MirrorContent(Aspect aspect) {
    if (aspect == Aspect::items) {
        MirrorCaptions();
        InvalidateRect(Window(), nullptr, FALSE);
    }
    if (aspect == Aspect::selection && Send(TCM_GETCURSEL) != tabs_.Tab()) {
        mirroring_ = true;
        Send(TCM_SETCURSEL, static_cast<WPARAM>(tabs_.Tab()));
        mirroring_ = false;
    }
}

void NativeTab::MirrorCaptions() {
    for (auto tab = static_cast<int>(Send(TCM_GETITEMCOUNT)); tab < tabs_.TabCount(); ++tab) {
        std::wstring caption = ToWide(tabs_.TabCaption(tab));
        TCITEMW item{};
        item.mask = TCIF_TEXT;
        item.pszText = caption.data();
        Send(TCM_INSERTITEMW, static_cast<WPARAM>(tab), reinterpret_cast<LPARAM>(&item));
    }
}

LRESULT NativeTab::Told(const NMHDR& notice) {
    if (notice.code == TCN_SELCHANGE && !mirroring_) {
        PostChoice(static_cast<int>(Send(TCM_GETCURSEL)));
    }
    return 0;
}

void NativeTab::PostChoice(int tab) {
    PostAction([this, tab] { tabs_.UserChose(tab); });
}

LRESULT NativeTab::Handle(UINT message, WPARAM first, LPARAM second) {
    if (TakesInput(message, first, second)) {
        return 0;
    }
    switch (message) {
        case WM_MOUSEMOVE:
            if (IsOnDisabled(second)) {
                return Default(WM_MOUSELEAVE, 0, 0);  // or it would light up
            }
            break;
        case WM_ERASEBKGND:
            return TRUE;  // all is painted in one go
        case WM_PAINT:
            Paint();
            return 0;
        case WM_PRINTCLIENT:
            Draw(reinterpret_cast<HDC>(first));
            return 0;
        default:
            break;
    }
    return Default(message, first, second);
}

/// True for what the strip itself must not see, because it would bring up a disabled tab.
bool NativeTab::TakesInput(UINT message, WPARAM first, LPARAM second) {
    switch (message) {
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            return IsOnDisabled(second);
        case WM_KEYDOWN:
            return MoveByKey(first);
        case TCM_SETCURFOCUS:
            return !tabs_.TabEnabled(static_cast<int>(first));
        default:
            return false;
    }
}

bool NativeTab::IsOnDisabled(LPARAM point) const {
    TCHITTESTINFO place{};
    place.pt = {static_cast<short>(LOWORD(point)), static_cast<short>(HIWORD(point))};
    const auto tab = static_cast<int>(Send(TCM_HITTEST, 0, reinterpret_cast<LPARAM>(&place)));
    return tab >= 0 && !tabs_.TabEnabled(tab);
}

/// The keys of the strip, past the tabs that are disabled. False for keys that are none of it.
bool NativeTab::MoveByKey(WPARAM key) {
    const bool forwards = key == VK_RIGHT || key == VK_DOWN || key == VK_HOME;
    const bool backwards = key == VK_LEFT || key == VK_UP || key == VK_END;
    if (!forwards && !backwards) {
        return false;
    }
    const int step = forwards ? 1 : -1;
    int tab = tabs_.Tab() + step;
    if (key == VK_HOME) {
        tab = 0;
    } else if (key == VK_END) {
        tab = tabs_.TabCount() - 1;
    }
    while (tab >= 0 && tab < tabs_.TabCount() && !tabs_.TabEnabled(tab)) {
        tab += step;
    }
    if (tabs_.TabEnabled(tab)) {
        PostChoice(tab);
    }
    return true;
}

void NativeTab::Paint() {
    PAINTSTRUCT paint{};
    HDC surface = BeginPaint(Window(), &paint);
    if (surface == nullptr) {
        return;
    }
    RECT inner{};
    GetClientRect(Window(), &inner);
    const Canvas canvas(surface, {inner.right, inner.bottom});
    if (canvas.IsValid()) {
        Draw(canvas.Surface());
        BitBlt(surface, 0, 0, inner.right, inner.bottom, canvas.Surface(), 0, 0, SRCCOPY);
    }
    EndPaint(Window(), &paint);
}

void NativeTab::Draw(HDC surface) {
    RECT inner{};
    GetClientRect(Window(), &inner);
    const auto behind =
        reinterpret_cast<HBRUSH>(SendMessageW(CurrentSite().parent, WM_CTLCOLORSTATIC,
                                              reinterpret_cast<WPARAM>(surface), reinterpret_cast<LPARAM>(Window())));
    FillRect(surface, &inner, behind);
    Default(WM_PRINTCLIENT, reinterpret_cast<WPARAM>(surface), PRF_CLIENT);
    GreyDisabled(surface);
}

/// Draws the colour of the tabs thinly over those that are disabled: however the system draws a tab, it looks faded.
void NativeTab::GreyDisabled(HDC surface) {
    const Canvas colour(surface, {1, 1});
    if (!colour.IsValid()) {
        return;  // they look like the others, which is no reason not to show them
    }
    SetPixel(colour.Surface(), 0, 0, GetSysColor(COLOR_BTNFACE));
    for (int tab = 0; tab < tabs_.TabCount(); ++tab) {
        RECT place{};
        if (tabs_.TabEnabled(tab) ||
            Send(TCM_GETITEMRECT, static_cast<WPARAM>(tab), reinterpret_cast<LPARAM>(&place)) == 0) {
            continue;
        }
        InflateRect(&place, -GetSystemMetrics(SM_CXEDGE), -GetSystemMetrics(SM_CYEDGE));
        GdiAlphaBlend(surface, place.left, place.top, place.right - place.left, place.bottom - place.top,
                      colour.Surface(), 0, 0, 1, 1, {AC_SRC_OVER, 0, greyness, 0});
    }
}

}  // namespace marlok::win32
