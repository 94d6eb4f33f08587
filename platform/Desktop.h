#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace marlok {

/// Style bits of a message box, as Windows numbers them.
namespace messagestyle {
inline constexpr std::uint32_t ok = 0;
inline constexpr std::uint32_t okCancel = 1;
inline constexpr std::uint32_t abortRetryIgnore = 2;
inline constexpr std::uint32_t yesNo = 4;
inline constexpr std::uint32_t stop = 16;
inline constexpr std::uint32_t question = 32;
inline constexpr std::uint32_t information = 64;
}  // namespace messagestyle

/// Identifiers of the buttons of a message box.
namespace button {
inline constexpr int ok = 1;
inline constexpr int cancel = 2;
inline constexpr int abort = 3;
inline constexpr int retry = 4;
inline constexpr int ignore = 5;
inline constexpr int yes = 6;
inline constexpr int no = 7;
}  // namespace button

/// The button of a message box of that style that Enter presses: the first one, since no style here names another.
[[nodiscard]] inline int DefaultButton(std::uint32_t style) {
    constexpr std::uint32_t buttons = 0xF;
    switch (style & buttons) {
        case messagestyle::abortRetryIgnore:
            return button::abort;
        case messagestyle::yesNo:
            return button::yes;
        default:
            return button::ok;
    }
}

/// The user's screen and input.
class Desktop {
 public:
    virtual ~Desktop() = default;

    /// Shows a message box over the active window and returns the pressed button.
    virtual int ShowMessage(const std::string& text, std::uint32_t style, const std::string& title) = 0;

    /// The same box; after `milliseconds` without an answer it closes by itself and returns its default button.
    virtual int ShowMessageFor(const std::string& text, std::uint32_t style, const std::string& title,
                               std::uint32_t milliseconds) = 0;

    /// The same box as ShowMessage's, with captions of the caller's in place of the buttons' own. `captions` names
    /// buttons of the style.
    struct ButtonCaption {
        int button = 0;
        std::string caption;
    };
    virtual int ShowMessageWithCaptions(const std::string& text, std::uint32_t style, const std::string& title,
                                        const std::vector<ButtonCaption>& captions) = 0;

    /// Asks the user for a line of text; "" when it was left empty or cancelled. The box's upper left corner is placed
    /// at `left` and `top` on the screen, in twips.
    [[nodiscard]] virtual std::string AskText(const std::string& prompt, const std::string& title, int left,
                                              int top) = 0;

    /// Hourglass or the normal pointer.
    virtual void ShowHourglass(bool on) = 0;

    /// Lets windows repaint and answers what the system and other programs ask of them; delivers no input, so no
    /// handler runs.
    virtual void PaintPending() = 0;

    /// Waits for input or until `milliseconds` are over, whichever comes first, and delivers all input that is
    /// there. May return earlier without any.
    virtual void WaitForInput(std::uint32_t milliseconds) = 0;

    /// A window of any program that lies directly on the desktop.
    struct TopLevelWindow {
        std::uint64_t handle = 0;
        std::uint32_t processId = 0;
        bool hasParent = false;  ///< or an owner
    };

    /// All of them, in the order from the front to the back.
    [[nodiscard]] virtual std::vector<TopLevelWindow> TopLevelWindows() = 0;

    /// Asks a window to close, as its close button does, and waits until it has dealt with that.
    virtual void CloseWindow(std::uint64_t handle) = 0;

    /// Throws away what the user has typed and clicked so far and no handler has seen yet, on its way through the
    /// system or through the program: what was meant for a window that has changed since must not act on it.
    virtual void DiscardInput() = 0;

    /// From now on a shutdown or log-off is held up while the user sees `reason` for it. The user can go through with
    /// it all the same, and a program without a visible window is ended after some seconds whatever it says. Another
    /// call changes the reason.
    virtual void BlockShutdown(const std::string& reason) = 0;

    /// A shutdown is not held up any longer. Nothing happens when none was.
    virtual void AllowShutdown() = 0;

    /// True once the system has asked whether the session may end, until that is called off. What is begun should be
    /// brought to an end: a few seconds are left.
    [[nodiscard]] virtual bool SessionEnding() = 0;

    /// Width of a vertical and height of a horizontal scroll bar, in twips.
    virtual int ScrollBarWidth() = 0;
    virtual int ScrollBarHeight() = 0;

    /// Size of the main screen in twips (1440 to the logical inch).
    virtual int ScreenWidth() = 0;
    virtual int ScreenHeight() = 0;
};

}  // namespace marlok
