#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "forms/Control.h"
#include "win32/machine/Handles.h"

namespace marlok::win32 {

/// Where a control lives on the screen.
struct Site {
    HWND parent = nullptr;
    const forms::Control* container = nullptr;  ///< the control whose window `parent` is; null for the form
    HFONT font = nullptr;                       ///< of controls that have none of their own
    UINT dpi = USER_DEFAULT_SCREEN_DPI;
};

/// True for the messages of the WM_CTLCOLOR family, in which a control asks its parent for its colours.
[[nodiscard]] bool IsColourMessage(UINT message);

/// A standard Windows control that shows one control of a form. It exists on the screen from the moment the control is
/// first shown until this object goes.
class NativeControl {
 public:
    /// Takes an action of the user to where it will run.
    using Post = std::function<void(std::function<void()>)>;

    /// Where a kind of control stands among its siblings: what lies around others lies behind them.
    enum class Layer { front, frame, tabs };

    NativeControl(const NativeControl&) = delete;
    NativeControl& operator=(const NativeControl&) = delete;

    /// Destroys the window, and with it those of controls that lie in it.
    virtual ~NativeControl();

    [[nodiscard]] forms::Control& Model() const { return model_; }

    /// Null until the control was shown once.
    [[nodiscard]] HWND Window() const { return window_; }

    /// True when the user can see the control and work with it.
    [[nodiscard]] bool IsUsable() const { return window_ != nullptr && model_.IsShown() && model_.Enabled; }

    /// True when the keyboard can come to the control now.
    [[nodiscard]] bool TakesKeyboard() const {
        return IsUsable() && (GetWindowLongPtrW(window_, GWL_STYLE) & WS_TABSTOP) != 0;
    }

    /// Creates the window with the identifier `id`, below its sibling `above` (null: on top of them all), and mirrors
    /// the whole state.
    /// @throws std::system_error when the system cannot make one.
    void Create(const Site& site, int id, HWND above);

    /// Moves to another resolution or font.
    void Adapt(const Site& site);

    /// Moves into another window, below its sibling `above`.
    void MoveInto(const Site& site, HWND above);

    /// Mirrors one aspect of the control. What is costly is put off to Flush.
    void Changed(forms::Aspect aspect);

    /// Mirrors what was put off.
    virtual void Flush() {}

    /// A notification of the control to its parent (the high word of WM_COMMAND).
    virtual void Notified(WORD) {}

    /// A notification of a common control to its parent (WM_NOTIFY); the answer goes back to the control.
    virtual LRESULT Told(const NMHDR&) { return 0; }

    /// Draws a line of a control that has its parent draw them (WM_DRAWITEM); false when it is none of these.
    [[nodiscard]] virtual bool DrawLine(const DRAWITEMSTRUCT&) { return false; }

    [[nodiscard]] virtual Layer Place() const { return Layer::front; }

    /// The background for a message of the WM_CTLCOLOR family, which the control has sent for itself; null for the
    /// system's own. Sets the colour of the text. `behind` says what lies behind the control.
    [[nodiscard]] virtual HBRUSH Colours(HDC surface, const std::function<HBRUSH()>& behind);

    /// True when the control shows what lies behind it and has to be painted anew when that changes.
    [[nodiscard]] virtual bool IsTransparent() const { return false; }

    /// The caption by whose first letter the keyboard reaches the control; null when it has none.
    [[nodiscard]] virtual const std::string* PressCaption() const { return nullptr; }

    /// Does what a press with the mouse does.
    virtual void Press() {}

    /// True when the control itself wants the Enter key, which then calls EnterPressed.
    [[nodiscard]] virtual bool TakesEnter() { return false; }
    virtual void EnterPressed() {}

    /// Shows the next frame of what moves, when it is due. Called again and again while the program waits for input
    /// and while it is busy.
    virtual void Animate() {}

    /// Milliseconds until Animate has something to do. `never` for nothing.
    [[nodiscard]] virtual std::uint32_t NextFrameIn() { return never; }
    static constexpr std::uint32_t never = INFINITE;

    /// A drive or another device has come or gone. Never called inside a window procedure.
    virtual void DevicesChanged() {}

    /// Has DevicesChanged called later, whether the control is shown or not.
    void PostDevicesChanged();

 protected:
    struct WindowKind {
        const wchar_t* className = nullptr;
        DWORD style = 0;
        DWORD extendedStyle = 0;
        bool watched = false;  ///< Handle gets the window's messages
    };

    NativeControl(forms::Control& model, Post post) : model_(model), post_(std::move(post)) {}

    [[nodiscard]] virtual WindowKind Kind() const = 0;

    /// Mirrors text, value, items, selection, colour or (behind a change of the window's font) font: what the kinds of
    /// controls differ in.
    virtual void MirrorContent(forms::Aspect aspect) = 0;

    /// True when the window's text is the control's own; else it is the accessible name.
    [[nodiscard]] virtual bool HasText() const { return false; }

    /// A message to the window of a watched kind. Throws nothing.
    virtual LRESULT Handle(UINT message, WPARAM first, LPARAM second) { return Default(message, first, second); }

    /// What the window itself does with a message.
    LRESULT Default(UINT message, WPARAM first, LPARAM second) const;

    LRESULT Send(UINT message, WPARAM first = 0, LPARAM second = 0) const {
        return SendMessageW(window_, message, first, second);
    }

    [[nodiscard]] const Site& CurrentSite() const { return site_; }

    /// Sets the window's text when it is another one: setting it anew would flicker and move the caret.
    void SetText(const std::string& text) const;

    /// Runs `action` later, if the control can still be used then.
    void PostAction(std::function<void()> action) const;

 private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM first, LPARAM second, UINT_PTR id,
                                      DWORD_PTR self);
    void PostWhileAlive(std::function<void()> action) const;
    void MirrorPlace() const;
    void MirrorUse() const;
    void MirrorFont();
    void MirrorColour();
    void MirrorName();

    forms::Control& model_;
    Post post_;
    HWND window_ = nullptr;
    Site site_;
    FontHandle font_;                                                   ///< the control's own, when it has one
    std::string named_;                                                 ///< the accessible name that the system knows
    BrushHandle back_;                                                  ///< of its back colour, when it has one
    std::shared_ptr<const bool> alive_ = std::make_shared<bool>(true);  ///< what is posted holds it weakly
};

}  // namespace marlok::win32
