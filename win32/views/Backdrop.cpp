#include "win32/views/Backdrop.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "forms/Controls.h"
#include "forms/TabControl.h"
#include "win32/views/Canvas.h"

namespace marlok::win32 {

namespace {

SIZE InnerSize(HWND window) {
    RECT inner{};
    GetClientRect(window, &inner);
    return {inner.right, inner.bottom};
}

/// Lets a pattern start at `x`, `y` of what is drawn on `surface`.
void PutPattern(HDC surface, int x, int y) {
    POINT corner{};
    GetViewportOrgEx(surface, &corner);
    SetBrushOrgEx(surface, corner.x + x, corner.y + y, nullptr);
}

}  // namespace

void PaintRows(HDC surface, SIZE size, const std::vector<forms::Colour>& rows) {
    if (rows.empty()) {
        const RECT whole{0, 0, size.cx, size.cy};
        FillRect(surface, &whole, GetSysColorBrush(COLOR_BTNFACE));
        return;
    }
    const auto count = static_cast<int>(rows.size());
    for (int row = 0; row < count; ++row) {
        const RECT strip{0, MulDiv(size.cy, row, count), size.cx, MulDiv(size.cy, row + 1, count)};
        if (RectVisible(surface, &strip) != 0) {
            const BrushHandle brush(CreateSolidBrush(rows[static_cast<std::size_t>(row)]));
            FillRect(surface, &strip, brush.Get());
        }
    }
}

void Backdrop::MirrorRows() {
    if (shownRows_ != form_.Backdrop()) {
        shownRows_ = form_.Backdrop();
        ChangedWhole();
    }
}

void Backdrop::Changed() {
    Forget();  // brushes are made anew when they are wanted
    for (const auto& control : controls_.All()) {
        if (control->Window() != nullptr && control->IsTransparent()) {
            RedrawWindow(control->Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_NOCHILDREN);
        }
    }
}

void Backdrop::ChangedWhole() {
    Changed();
    InvalidateRect(window_, nullptr, TRUE);
}

void Backdrop::Resized() {
    if (!form_.Backdrop().empty()) {
        ChangedWhole();  // every row is at another height
    }
}

void Backdrop::Paint(HDC surface) const {
    PaintRows(surface, InnerSize(window_), form_.Backdrop());
}

void Backdrop::Print(HDC surface) {
    Paint(surface);
    if (printing_) {
        return;  // a strip of tabs asks for what lies behind itself
    }
    printing_ = true;
    for (const NativeControl* control : controls_.InOrder()) {
        if (control->Place() == NativeControl::Layer::tabs && control->Model().IsShown()) {
            RECT place{};
            GetWindowRect(control->Window(), &place);
            MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&place), 2);
            HBRUSH brush = BrushOf(control);
            PutPattern(surface, place.left, place.top);
            FillRect(surface, &place, brush);
        }
    }
    printing_ = false;
}

HBRUSH Backdrop::Colours(NativeControl& control, HDC surface) {
    return control.Colours(surface, [&] { return Behind(control, surface); });
}

bool Backdrop::IsGround(const NativeControl& control) {
    return control.Place() == NativeControl::Layer::tabs ||
           dynamic_cast<const forms::PictureBox*>(&control.Model()) != nullptr;
}

HBRUSH Backdrop::Behind(const NativeControl& control, HDC surface) {
    const NativeControl* ground = GroundOf(control);
    HBRUSH brush = BrushOf(ground);
    POINT corner{};
    MapWindowPoints(control.Window(), ground == nullptr ? window_ : ground->Window(), &corner, 1);
    PutPattern(surface, -corner.x, -corner.y);
    return brush;
}

/// The control that another one lies on, null for the form itself. A frame is no ground: one sees through it.
const NativeControl* Backdrop::GroundOf(const NativeControl& control) const {
    for (const forms::Control* at = &control.Model(); at != nullptr; at = at->Container()) {
        const NativeControl* around = at->Container() == nullptr ? nullptr : controls_.Find(*at->Container());
        if (around != nullptr && IsGround(*around)) {
            return around;
        }
        const NativeControl* tabs = at->Tabs() == nullptr ? nullptr : controls_.Find(*at->Tabs());
        if (tabs != nullptr) {
            return tabs;
        }
    }
    return nullptr;
}

HBRUSH Backdrop::BrushOf(const NativeControl* ground) {
    if (ground == nullptr && form_.Backdrop().empty()) {
        return GetSysColorBrush(COLOR_BTNFACE);
    }
    HWND window = ground == nullptr ? window_ : ground->Window();
    const SIZE size = InnerSize(window);
    const auto found = std::find_if(kept_.begin(), kept_.end(), [&](const Kept& kept) {
        return kept.window == window && kept.size.cx == size.cx && kept.size.cy == size.cy;
    });
    if (found != kept_.end()) {
        return found->brush.Get();
    }
    BrushHandle made = MakeBrush(ground, window, size);
    if (!made.IsValid()) {
        return GetSysColorBrush(COLOR_BTNFACE);
    }
    std::erase_if(kept_, [window](const Kept& kept) { return kept.window == window; });
    kept_.push_back({window, size, std::move(made)});
    return kept_.back().brush.Get();
}

BrushHandle Backdrop::MakeBrush(const NativeControl* ground, HWND window, SIZE size) const {
    HDC like = GetDC(window);
    Canvas canvas(like, size);
    ReleaseDC(window, like);
    if (!canvas.IsValid()) {
        return {};
    }
    if (ground == nullptr) {
        Paint(canvas.Surface());
    } else {
        const forms::Colour back = ground->Model().BackColor;
        PaintRows(canvas.Surface(), size,
                  back == forms::systemColour ? std::vector<forms::Colour>{} : std::vector<forms::Colour>{back});
        SendMessageW(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.Surface()), PRF_CLIENT | PRF_ERASEBKGND);
    }
    return canvas.Brush();
}

}  // namespace marlok::win32
