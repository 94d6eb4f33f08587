#pragma once

#include <windows.h>

#include <cstdint>

#include "forms/Form.h"
#include "win32/machine/Handles.h"
#include "win32/views/Backdrop.h"
#include "win32/views/Focus.h"
#include "win32/views/FormControls.h"
#include "win32/views/FormMessages.h"
#include "win32/views/FormPlace.h"
#include "win32/views/Keyboard.h"
#include "win32/views/NativeControl.h"
#include "win32/views/NativeLoop.h"

namespace marlok::win32 {

/// The window on the screen that shows a form.
class NativeForm : public forms::View, public NativeLoop::Member {
 public:
    /// Creates the window, hidden. `form` and `loop` outlive it. A form that is larger than the screen is cut to it.
    /// @throws std::system_error when the system cannot make a window.
    NativeForm(forms::Form& form, NativeLoop& loop);
    NativeForm(const NativeForm&) = delete;
    NativeForm& operator=(const NativeForm&) = delete;
    ~NativeForm() override;

    void FormChanged() override;
    void ControlChanged(const forms::Control& control, forms::Aspect aspect) override;
    void ControlRemoved(const forms::Control& control) override;
    void Refresh() override;

    void Flush() override;
    void Animate() override;
    [[nodiscard]] std::uint32_t NextFrameIn() const override;
    [[nodiscard]] bool TakesKey(const MSG& message) override { return keyboard_.Handle(message); }
    [[nodiscard]] HWND Window() const override { return window_.Get(); }

 private:
    [[nodiscard]] static WindowHandle CreateHidden(const forms::Form& form);
    void CreateControls();
    [[nodiscard]] NativeControl::Post Poster();
    void LayOut();
    void MirrorControl(NativeControl& native, forms::Aspect aspect);
    void MirrorControlsIn(const forms::Control& around, forms::Aspect aspect);
    void MirrorVisible();

    forms::Form& form_;
    NativeLoop& loop_;
    WindowHandle window_;
    FormPlace place_;
    FormControls controls_;
    Focus focus_;
    Keyboard keyboard_;
    Backdrop backdrop_;
    FormMessages messages_;  ///< behind all that they go to: ended before any of it is destroyed
};

}  // namespace marlok::win32
