#include "win32/views/NativeControls.h"

#include <windows.h>
// Behind windows.h, whose types it uses.
#include <commctrl.h>

#include <algorithm>
#include <cmath>

#include "win32/machine/Wide.h"
#include "win32/views/WindowText.h"

namespace marlok::win32 {

using forms::Aspect;

namespace {

/// Steps of a progress bar; more than any screen has pixels across one.
constexpr int progressRange = 10000;

LONG_PTR StyleOf(forms::Label::Align alignment) {
    switch (alignment) {
        case forms::Label::Align::right:
            return SS_RIGHT;
        case forms::Label::Align::centre:
            return SS_CENTER;
        default:
            return SS_LEFT;
    }
}

WPARAM CheckOf(forms::CheckBox::State state) {
    switch (state) {
        case forms::CheckBox::State::checked:
            return BST_CHECKED;
        case forms::CheckBox::State::greyed:
            return BST_INDETERMINATE;
        default:
            return BST_UNCHECKED;
    }
}

}  // namespace

NativeControl::WindowKind NativeLabel::Kind() const {
    return {WC_STATICW, SS_LEFT | SS_NOPREFIX, 0};  // captions hold paths: "&" stands for itself
}

void NativeLabel::MirrorContent(Aspect aspect) {
    if (aspect == Aspect::text) {
        SetText(label_.Caption);
        InvalidateRect(Window(), nullptr, TRUE);
    }
    if (aspect == Aspect::colour) {
        const LONG_PTR others = GetWindowLongPtrW(Window(), GWL_STYLE) & ~LONG_PTR{SS_TYPEMASK};
        SetWindowLongPtrW(Window(), GWL_STYLE, others | StyleOf(label_.Alignment));
    }
}

NativeControl::WindowKind NativeButton::Kind() const {
    return {WC_BUTTONW, BS_PUSHBUTTON | BS_MULTILINE | WS_TABSTOP, 0};
}

void NativeButton::MirrorContent(Aspect aspect) {
    if (aspect == Aspect::text) {
        SetText(button_.Caption);
    }
}

void NativeButton::Notified(WORD notification) {
    if (notification == BN_CLICKED) {
        Press();
    }
}

void NativeButton::Press() {
    PostAction([this] {
        if (button_.Click) {
            button_.Click();
        }
    });
}

NativeControl::WindowKind NativeCheckBox::Kind() const {
    // Not one that checks itself: what it shows is what the program says.
    return {WC_BUTTONW, BS_3STATE | BS_MULTILINE | WS_TABSTOP, 0};
}

void NativeCheckBox::MirrorContent(Aspect aspect) {
    if (aspect == Aspect::text) {
        SetText(box_.Caption);
    }
    if (aspect == Aspect::value) {
        Send(BM_SETCHECK, CheckOf(box_.Value));
    }
}

void NativeCheckBox::Notified(WORD notification) {
    if (notification == BN_CLICKED) {
        Press();
    }
}

void NativeCheckBox::Press() {
    PostAction([this] { box_.UserPressed(); });
}

NativeControl::WindowKind NativeFrame::Kind() const {
    // It must not paint over what lies in it, which stands in front of it.
    return {WC_BUTTONW, BS_GROUPBOX | WS_CLIPSIBLINGS, 0, true};
}

void NativeFrame::MirrorContent(Aspect aspect) {
    if (aspect == Aspect::text) {
        SetText(frame_.Caption);
    }
}

LRESULT NativeFrame::Handle(UINT message, WPARAM first, LPARAM second) {
    if (message == WM_ERASEBKGND) {
        const auto brush = reinterpret_cast<HBRUSH>(
            SendMessageW(CurrentSite().parent, WM_CTLCOLORSTATIC, first, reinterpret_cast<LPARAM>(Window())));
        RECT inner{};
        GetClientRect(Window(), &inner);
        return FillRect(reinterpret_cast<HDC>(first), &inner, brush) != 0 ? TRUE : FALSE;
    }
    return Default(message, first, second);
}

NativeControl::WindowKind NativeTextBox::Kind() const {
    return {WC_EDITW, ES_AUTOHSCROLL | WS_TABSTOP, WS_EX_CLIENTEDGE};
}

/// Whether the text can be changed tells nobody when it changes.
void NativeTextBox::Flush() {
    const bool locked = (GetWindowLongPtrW(Window(), GWL_STYLE) & ES_READONLY) != 0;
    if (locked != box_.Locked) {
        Send(EM_SETREADONLY, box_.Locked ? TRUE : FALSE);
    }
}

void NativeTextBox::MirrorContent(Aspect aspect) {
    if (aspect == Aspect::text) {
        mirroring_ = true;
        SetText(box_.Text);
        mirroring_ = false;
    }
}

void NativeTextBox::Notified(WORD notification) {
    if (notification == EN_CHANGE && !mirroring_) {
        PostAction([this] { box_.Text = FromWide(WindowText(Window())); });
    }
}

NativeControl::WindowKind NativeProgressBar::Kind() const {
    return {PROGRESS_CLASSW, PBS_SMOOTH, 0};
}

void NativeProgressBar::MirrorContent(Aspect aspect) {
    changed_ = changed_ || aspect == Aspect::value;
}

/// The control paints itself with every step. A run moves its bar several times for each small file: only what is there
/// when windows paint is shown.
void NativeProgressBar::Flush() {
    if (!changed_) {
        return;
    }
    changed_ = false;
    const int position = ScaledPosition(bar_.Min, bar_.Max, bar_.Value, progressRange);
    if (position > shown_) {
        // The visual styles let a growing bar glide up by a timer, which does not run during a copy. A shrinking one
        // jumps: so a step too far, then back.
        Send(PBM_SETRANGE32, 0, progressRange + 1);
        Send(PBM_SETPOS, static_cast<WPARAM>(position + 1));
    }
    Send(PBM_SETPOS, static_cast<WPARAM>(position));
    Send(PBM_SETRANGE32, 0, progressRange);
    shown_ = position;
}

int ScaledPosition(float minimum, float maximum, float value, int range) {
    const double share = (double{value} - minimum) / (double{maximum} - minimum);
    if (!std::isfinite(share)) {
        return 0;
    }
    return static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * range));
}

}  // namespace marlok::win32
