#include "win32/views/NativeWebView.h"

#include <windows.h>

#include <algorithm>

namespace marlok::win32 {

using forms::Aspect;

namespace {

/// The system's view has this time to load a page, in milliseconds; one that has not come by then will not come.
constexpr std::uint64_t patience = 15000;

/// How often a view that is loading is looked at, in milliseconds.
constexpr std::uint32_t lookAgain = 50;

/// The timer that keeps the picture moving while the system runs a loop of its own: a message box, a window on the
/// move.
constexpr UINT_PTR frameTimer = 1;

}  // namespace

void NativeWebView::MirrorContent(Aspect aspect) {
    if (aspect == Aspect::value) {
        const bool starts = view_.Playing && !playing_;  // the system's view can stop, but not go on
        if (starts || view_.Location.Get() != location_) {
            Load();
        }
        Play(view_.Playing);
    }
    NativeArea::MirrorContent(aspect);
}

void NativeWebView::Load() {
    location_ = view_.Location;
    systemShown_ = false;
    frame_ = 0;
    picture_ = Picture::FromFile(location_);
    system_.reset();
    if (!location_.empty() && view_.Playing) {
        system_ = std::make_unique<SystemWebView>(Window(), location_);
        loadingUntil_ = GetTickCount64() + patience;
    }
    if (system_ && !system_->Exists()) {
        system_.reset();
    }
}

void NativeWebView::Play(bool on) {
    playing_ = on;
    KillTimer(Window(), frameTimer);
    if (!on) {
        if (system_) {
            system_->Stop();
        }
        return;
    }
    if (!picture_.IsEmpty()) {
        frameDue_ = GetTickCount64() + picture_.Frames()[frame_].delay;
    }
    if (picture_.IsAnimated() || system_) {
        // Without the timer the picture rests in the system's own loops, no more.
        static_cast<void>(SetTimer(Window(), frameTimer, lookAgain, nullptr));
    }
}

void NativeWebView::Animate() {
    // Called far more often than the clock of the system ticks; once to the tick is enough.
    const std::uint64_t now = GetTickCount64();
    if (!playing_ || now == animated_) {
        return;
    }
    animated_ = now;
    if (system_) {
        system_->DispatchOwnMessages();
    }
    Step();
    if (Draws()) {
        UpdateWindow(Window());
    }
}

void NativeWebView::Step() {
    const std::uint64_t now = GetTickCount64();
    if (system_ && !systemShown_) {
        TakeSystemView();
    }
    if (Draws() && now >= frameDue_) {
        frame_ = (frame_ + 1) % picture_.Frames().size();
        // A picture that could not be shown in time goes on from where it is; it does not hurry after the clock.
        frameDue_ = now + picture_.Frames()[frame_].delay;
        Redraw();
    }
}

/// Shows the system's view when it has loaded its page, and gives it up when its time is over.
void NativeWebView::TakeSystemView() {
    if (system_->HasLoaded()) {
        systemShown_ = true;
        system_->Show(Area());
    } else if (GetTickCount64() >= loadingUntil_) {
        system_.reset();
    }
}

std::uint32_t NativeWebView::NextFrameIn() {
    std::uint32_t next = never;
    if (playing_ && system_ && !systemShown_) {
        next = lookAgain;
    }
    if (Draws()) {
        const std::uint64_t now = GetTickCount64();
        next = std::min(next, frameDue_ <= now ? 0 : static_cast<std::uint32_t>(frameDue_ - now));
    }
    return next;
}

LRESULT NativeWebView::Handle(UINT message, WPARAM first, LPARAM second) {
    if (message == WM_TIMER && first == frameTimer) {
        Step();
        return 0;
    }
    if (message == WM_SIZE && systemShown_) {
        system_->Resize(Area());
    }
    return NativeArea::Handle(message, first, second);
}

const Bitmap* NativeWebView::PictureFor(PixelSize) {
    return picture_.IsEmpty() ? nullptr : &picture_.Frames()[frame_].bitmap;
}

PixelSize NativeWebView::Area() const {
    RECT area{};
    GetClientRect(Window(), &area);
    return {area.right, area.bottom};
}

}  // namespace marlok::win32
