#include "win32/views/FormPlace.h"

#include <algorithm>
#include <utility>

#include "win32/views/Twips.h"
#include "win32/views/WorkArea.h"

namespace marlok::win32 {

namespace {

/// Sets a flag for as long as it lives.
class While {
 public:
    explicit While(bool& flag) : flag_(flag) { flag = true; }
    While(const While&) = delete;
    While& operator=(const While&) = delete;
    ~While() { flag_ = false; }

 private:
    bool& flag_;
};

}  // namespace

FormPlace::FormPlace(forms::Form& form, HWND window, std::function<void()> layOut)
    : form_(form), window_(window), layOut_(std::move(layOut)), dpi_(GetDpiForWindow(window)) {}

void FormPlace::CutToScreen() {
    const RECT wanted = Outer();
    const SIZE work = WorkSize(wanted);
    const LONG width = std::min(wanted.right - wanted.left, work.cx);
    const LONG height = std::min(wanted.bottom - wanted.top, work.cy);
    if (width == wanted.right - wanted.left && height == wanted.bottom - wanted.top) {
        return;
    }
    Set(MovedOntoWorkArea({wanted.left, wanted.top, wanted.left + width, wanted.top + height}));
    Take();
}

void FormPlace::Mirror() {
    if (mirroring_) {
        return;
    }
    const RECT wanted = Outer();
    RECT shown{};
    GetWindowRect(window_, &shown);
    if (EqualRect(&wanted, &shown) != 0) {
        return;
    }
    Set(wanted);
    Take();  // the system may have cut what is larger than the screen
}

void FormPlace::Take() {
    if (mirroring_ || IsIconic(window_) != 0) {
        return;
    }
    const RECT wanted = Outer();
    RECT outer{};
    GetWindowRect(window_, &outer);
    const bool moved = outer.left != wanted.left || outer.top != wanted.top;
    RECT inner{};
    GetClientRect(window_, &inner);
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
        layOut_();
    }
}

void FormPlace::ChangeResolution(UINT dpi, const RECT& suggested) {
    dpi_ = dpi;
    Set(suggested);
}

void FormPlace::LimitSize(MINMAXINFO& limits) const {
    RECT least{0, 0, ToPixels(form_.LeastWidth(), dpi_), ToPixels(form_.LeastHeight(), dpi_)};
    AdjustWindowRectExForDpi(&least, formStyle, FALSE, 0, dpi_);
    RECT place{};
    GetWindowRect(window_, &place);
    const SIZE work = WorkSize(place);
    POINT& limit = limits.ptMinTrackSize;
    if (form_.LeastWidth() > 0) {
        limit.x = std::max(limit.x, std::min(least.right - least.left, work.cx));
    }
    if (form_.LeastHeight() > 0) {
        limit.y = std::max(limit.y, std::min(least.bottom - least.top, work.cy));
    }
}

/// The place of the window on the screen, its frame included, when it is as the form wants it.
RECT FormPlace::Outer() const {
    const UINT systemDpi = GetDpiForSystem();
    RECT place{};
    place.right = ToPixels(form_.Width(), dpi_);
    place.bottom = ToPixels(form_.Height(), dpi_);
    AdjustWindowRectExForDpi(&place, formStyle, FALSE, 0, dpi_);
    OffsetRect(&place, ToPixels(form_.Left(), systemDpi) - place.left, ToPixels(form_.Top(), systemDpi) - place.top);
    return place;
}

void FormPlace::Set(const RECT& place) {
    const While echo(mirroring_);
    SetWindowPos(window_, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace marlok::win32
