#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "forms/Form.h"
#include "platform/win32/Handles.h"
#include "platform/win32/NativeControl.h"
#include "platform/win32/NativeLoop.h"

namespace marlok::win32 {

/// The window on the screen that shows a form. The form's place is that of the window's upper left corner, its size
/// that of the area inside the frame, where the controls lie.
class NativeForm : public forms::View {
 public:
    /// Creates the window, hidden. `form` and `loop` outlive it.
    /// @throws std::system_error when the system cannot make a window.
    NativeForm(forms::Form& form, NativeLoop& loop);
    NativeForm(const NativeForm&) = delete;
    NativeForm& operator=(const NativeForm&) = delete;
    ~NativeForm() override;

    void FormChanged() override;
    void ControlChanged(const forms::Control& control, forms::Aspect aspect) override;
    void Refresh() override;

    /// Mirrors what the controls have put off.
    void Flush();

    [[nodiscard]] HWND Window() const { return window_.Get(); }

 private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM first, LPARAM second);
    [[nodiscard]] static const wchar_t* WindowClass();

    LRESULT Handle(UINT message, WPARAM first, LPARAM second);
    void CreateHidden();
    void CreateControls();
    void CreateControl(NativeControl& control);
    [[nodiscard]] NativeControl* Make(const forms::Control& control);
    void Post(NativeLoop::Action action);
    [[nodiscard]] NativeControl* Find(const forms::Control& control) const;
    [[nodiscard]] NativeControl* FindByWindow(HWND window) const;
    [[nodiscard]] Site CurrentSite() const { return {window_.Get(), font_.Get(), dpi_}; }
    [[nodiscard]] RECT OuterPlace() const;

    void MirrorPlace();
    void MirrorVisible();
    void TakePlace();
    void ChangeResolution(UINT dpi, const RECT& suggested);
    void LoadFont();
    void OnCommand(WPARAM first, LPARAM second);
    void OnClose();
    void OnActivate(WPARAM first);
    void OnFocus();
    [[nodiscard]] LRESULT DefaultButton() const;

    forms::Form& form_;
    NativeLoop& loop_;
    FontHandle font_;
    WindowHandle window_;  ///< behind the font: gone before it
    UINT dpi_ = USER_DEFAULT_SCREEN_DPI;
    std::vector<std::unique_ptr<NativeControl>> controls_;
    std::vector<const forms::Control*> withoutWindow_;  ///< kinds of controls that have no native side
    HWND lastFocus_ = nullptr;                          ///< where the keyboard was when another window became active
    bool mirroring_ = false;  ///< place or size is being set: what the window reports is an echo
};

}  // namespace marlok::win32
