#include "win32/views/NativeArea.h"

#include <windows.h>

#include <new>

#include "win32/views/Canvas.h"

namespace marlok::win32 {

using forms::Aspect;

namespace {

constexpr const wchar_t* className = L"MarlokArea";

const wchar_t* WindowClass() {
    static const ATOM registered = [] {
        WNDCLASSEXW kind{};
        kind.cbSize = sizeof kind;
        kind.lpfnWndProc = &DefWindowProcW;
        kind.hInstance = GetModuleHandleW(nullptr);
        kind.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        kind.lpszClassName = className;
        return RegisterClassExW(&kind);
    }();
    return registered != 0 ? className : L"";  // creating a window of class "" fails with a code of its own
}

/// The colour that lies behind a window: that of what the parent would have behind a label in its place.
COLORREF ColourBehind(HWND window) {
    HDC screen = GetDC(window);
    const Canvas canvas(screen, {1, 1});
    ReleaseDC(window, screen);
    if (!canvas.IsValid()) {
        return GetSysColor(COLOR_BTNFACE);
    }
    const LRESULT brush = SendMessageW(GetParent(window), WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(canvas.Surface()),
                                       reinterpret_cast<LPARAM>(window));
    const RECT pixel{0, 0, 1, 1};
    FillRect(canvas.Surface(), &pixel, brush != 0 ? reinterpret_cast<HBRUSH>(brush) : GetSysColorBrush(COLOR_BTNFACE));
    return GetPixel(canvas.Surface(), 0, 0);
}

/// 0x00RRGGBB of a control's back colour.
std::uint32_t Background(const forms::Control& control, HWND window) {
    const forms::Colour own = control.BackColor;
    const std::uint32_t colour = own != forms::systemColour ? own : ColourBehind(window);
    const std::uint32_t red = GetRValue(colour);
    const std::uint32_t green = GetGValue(colour);
    return red << 16U | green << 8U | GetBValue(colour);
}

PixelSize AreaOf(HWND window) {
    RECT area{};
    GetClientRect(window, &area);
    return {area.right, area.bottom};
}

}  // namespace

NativeControl::WindowKind NativeArea::Kind() const {
    return {WindowClass(), WS_CLIPCHILDREN | WS_CLIPSIBLINGS, 0, true};
}

void NativeArea::MirrorContent(Aspect aspect) {
    if (aspect == Aspect::colour || aspect == Aspect::value) {
        Redraw();
    }
}

void NativeArea::Redraw() {
    shown_ = Bitmap();
    InvalidateRect(Window(), nullptr, FALSE);
}

LRESULT NativeArea::Handle(UINT message, WPARAM first, LPARAM second) {
    switch (message) {
        case WM_ERASEBKGND:
            return TRUE;  // painting covers everything: erasing before it would only flicker
        case WM_PAINT:
            Paint();
            return 0;
        case WM_PRINTCLIENT:
            PaintAndForgive(reinterpret_cast<HDC>(first));
            return 0;
        case WM_SIZE:
        case WM_SYSCOLORCHANGE:
            Redraw();
            break;
        default:
            break;
    }
    return Default(message, first, second);
}

void NativeArea::Paint() {
    PAINTSTRUCT painting{};
    if (HDC surface = BeginPaint(Window(), &painting)) {
        PaintAndForgive(surface);
        EndPaint(Window(), &painting);
    }
}

/// Inside a window procedure nothing may be thrown: what cannot be drawn for want of memory is drawn the next time.
void NativeArea::PaintAndForgive(HDC surface) {
    try {
        PaintOn(surface);
    } catch (const std::bad_alloc&) {
        shown_ = Bitmap();
    }
}

void NativeArea::PaintOn(HDC surface) {
    Compose();
    if (shown_.IsEmpty()) {
        return;
    }
    BITMAPINFO format{};
    format.bmiHeader.biSize = sizeof format.bmiHeader;
    format.bmiHeader.biWidth = shown_.width;
    format.bmiHeader.biHeight = -shown_.height;  // from the top
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 32;
    format.bmiHeader.biCompression = BI_RGB;
    const auto rows = static_cast<UINT>(shown_.height);
    // What cannot be painted now is painted with the next message.
    static_cast<void>(SetDIBitsToDevice(surface, 0, 0, static_cast<DWORD>(shown_.width), rows, 0, 0, 0, rows,
                                        shown_.pixels.data(), &format, DIB_RGB_COLORS));
}

void NativeArea::Compose() {
    const PixelSize area = AreaOf(Window());
    const std::uint32_t background = Background(Model(), Window());
    if (PixelSize{shown_.width, shown_.height} == area && background == background_) {
        return;
    }
    const Bitmap* picture = PictureFor(area);
    shown_ = Centred(picture == nullptr ? Bitmap() : *picture, area, background);
    background_ = background;
}

}  // namespace marlok::win32
