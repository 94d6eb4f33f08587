#pragma once

#include <windows.h>

#include <string>

/// Mouse and keyboard as a person uses them: real input, which goes wherever the system sends it. A window gets nothing
/// that a person could not have given it.
namespace marlok::test {

/// Brings the top-level window of `window` to the front, as clicking it in the task bar does.
/// @throws NotYet when it cannot be used: it is disabled because of another window, or it does not come to the front.
void BringToFront(HWND window);

/// A point in a control, from the corner of its client area, in pixels.
struct Spot {
    HWND control;
    POINT point;
};

/// The middle of a control.
[[nodiscard]] Spot MiddleOf(HWND control);

/// A point of `area`, a rectangle in the control, that no earlier click makes a double click of.
[[nodiscard]] Spot FreshSpotIn(HWND control, const RECT& area);

/// Moves the mouse there.
void PointAt(const Spot& spot);

enum class Clicks { once = 1, twice = 2 };

/// Clicks there with the left button, once the control's window is in front.
/// @throws NotYet when the window or the control cannot be used, or something else is on top of that point.
void Click(const Spot& spot, Clicks clicks = Clicks::once);

/// The same without bringing anything to the front.
void ClickWhereItIs(const Spot& spot, Clicks clicks = Clicks::once);

/// Holds a key down as long as it lives.
class HeldKey {
 public:
    explicit HeldKey(WORD key);
    HeldKey(const HeldKey&) = delete;
    HeldKey& operator=(const HeldKey&) = delete;
    ~HeldKey();

 private:
    WORD key_;
};

/// Presses keys together: "F1", "Ctrl+Tab", "Alt+H", "Enter", "Down", "a".
/// @throws std::runtime_error for a key that there is not.
void PressKeys(const std::wstring& keys);

/// Types the text, whatever keyboard there is.
void TypeText(const std::wstring& text);

/// Waits until the window's program has taken the input that was sent so far. One that then works without looking
/// after its windows is not waited for longer than two seconds, nor is a window that has gone.
void Settle(HWND window);

/// The control of the window's program that has the keyboard; null for none.
[[nodiscard]] HWND FocusOf(HWND window);

}  // namespace marlok::test
