#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>

#include "forms/Control.h"

namespace marlok::win32 {

/// Where a control lives on the screen.
struct Site {
    HWND parent = nullptr;
    HFONT font = nullptr;
    UINT dpi = USER_DEFAULT_SCREEN_DPI;
};

/// Twips (1440 to the logical inch) in the pixels of a screen, and back.
[[nodiscard]] int ToPixels(int twips, UINT dpi);
[[nodiscard]] int ToTwips(int pixels, UINT dpi);

/// Wide text of any window.
[[nodiscard]] std::wstring WindowText(HWND window);

/// A standard Windows control that shows one control of a form. It exists on the screen from the moment the control is
/// first visible; its parent window destroys it.
class NativeControl {
 public:
    /// Takes an action of the user to where it will run.
    using Post = std::function<void(std::function<void()>)>;

    /// The native side of `control`; null for controls that have none (timers, hidden trees).
    [[nodiscard]] static std::unique_ptr<NativeControl> For(forms::Control& control, Post post);

    NativeControl(const NativeControl&) = delete;
    NativeControl& operator=(const NativeControl&) = delete;
    virtual ~NativeControl() = default;

    [[nodiscard]] forms::Control& Model() const { return model_; }

    /// Null until the control was visible once.
    [[nodiscard]] HWND Window() const { return window_; }

    /// Creates the window with the identifier `id`, in the tab order behind `previous` (null: first), and mirrors the
    /// whole state.
    /// @throws std::system_error when the system cannot make one.
    void Create(const Site& site, int id, HWND previous);

    /// Moves to another resolution or font.
    void Adapt(const Site& site);

    /// Mirrors one aspect of the control. What is costly is put off to Flush.
    void Changed(forms::Aspect aspect);

    /// Mirrors what was put off.
    virtual void Flush() {}

    /// A notification of the control to its parent (the high word of WM_COMMAND).
    virtual void Notified(WORD) {}

 protected:
    struct WindowKind {
        const wchar_t* className;
        DWORD style;
        DWORD extendedStyle;
    };

    NativeControl(forms::Control& model, Post post) : model_(model), post_(std::move(post)) {}

    [[nodiscard]] virtual WindowKind Kind() const = 0;

    /// Mirrors text, value, items or selection: what the kinds of controls differ in.
    virtual void MirrorContent(forms::Aspect aspect) = 0;

    LRESULT Send(UINT message, WPARAM first = 0, LPARAM second = 0) const {
        return SendMessageW(window_, message, first, second);
    }

    /// Sets the window's text when it is another one: setting it anew would flicker and move the caret.
    void SetText(const std::string& text) const;

    /// Runs `action` later, if the control can still be used then.
    void PostAction(std::function<void()> action) const;

 private:
    void MirrorPlace() const;
    void MirrorUse() const;
    void PassFocusOn() const;

    forms::Control& model_;
    Post post_;
    HWND window_ = nullptr;
    Site site_;
};

}  // namespace marlok::win32
