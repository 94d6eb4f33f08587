#include "platform/win32/NativeControls.h"

#include <windows.h>
// Behind windows.h, whose types it uses.
#include <commctrl.h>

#include <algorithm>
#include <cmath>

#include "platform/win32/Wide.h"

namespace marlok::win32 {

using forms::Aspect;

namespace {

/// Steps of a progress bar; more than any screen has pixels across one.
constexpr int progressRange = 10000;

}  // namespace

NativeControl::WindowKind NativeLabel::Kind() const {
    return {WC_STATICW, SS_LEFT | SS_NOPREFIX, 0};  // captions hold paths: "&" stands for itself
}

void NativeLabel::MirrorContent(Aspect aspect) {
    if (aspect == Aspect::text) {
        SetText(label_.Caption);
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
        PostAction([this] {
            if (button_.Click) {
                button_.Click();
            }
        });
    }
}

NativeControl::WindowKind NativeTextBox::Kind() const {
    return {WC_EDITW, ES_AUTOHSCROLL | WS_TABSTOP, WS_EX_CLIENTEDGE};
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
    if (aspect != Aspect::value) {
        return;
    }
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
