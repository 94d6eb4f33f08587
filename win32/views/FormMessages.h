#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <utility>

#include "win32/views/Backdrop.h"
#include "win32/views/Focus.h"
#include "win32/views/FormControls.h"
#include "win32/views/FormPlace.h"
#include "win32/views/Keyboard.h"

namespace marlok::win32 {

class NativeLoop;

/// What the system says to a form's window: takes each message to the member that it concerns.
class FormMessages {
 public:
    /// A window and its parts, all of which outlive the messages.
    struct Parts {
        HWND window;
        FormPlace& place;
        FormControls& controls;
        Focus& focus;
        const Keyboard& keyboard;
        Backdrop& backdrop;
    };

    /// The class of the windows whose messages come here; "" when the system has no room for it: creating a window of
    /// class "" fails with a code of its own.
    [[nodiscard]] static const wchar_t* WindowClass();

    /// `close` is called when the window is to be closed, inside the window procedure. `loop` outlives this object.
    FormMessages(const Parts& parts, NativeLoop& loop, std::function<void()> close)
        : parts_(parts), loop_(loop), close_(std::move(close)) {}
    FormMessages(const FormMessages&) = delete;
    FormMessages& operator=(const FormMessages&) = delete;

    /// Nothing that the window says after this comes here.
    ~FormMessages();

    /// From here on the window's messages come here; until then they go to the system alone.
    void Begin();

 private:
    /// The answer to a message of one kind; nothing when the system is to answer it.
    using Answer = std::optional<LRESULT>;

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM first, LPARAM second);
    [[nodiscard]] LRESULT Handle(UINT message, WPARAM first, LPARAM second);
    [[nodiscard]] Answer OfWindow(UINT message, WPARAM first, LPARAM second);
    [[nodiscard]] Answer OfSession(UINT message, WPARAM first, LPARAM second);
    [[nodiscard]] Answer OfPlace(UINT message, WPARAM first, LPARAM second);
    [[nodiscard]] Answer OfKeyboard(UINT message, WPARAM first, LPARAM second);
    [[nodiscard]] Answer OfControls(UINT message, WPARAM first, LPARAM second);
    [[nodiscard]] Answer OfPainting(UINT message, WPARAM first, LPARAM second);
    [[nodiscard]] Answer OfColours(UINT message, WPARAM first, LPARAM second);

    void ChangeResolution(UINT dpi, const RECT& suggested);
    void Activate(WPARAM first);
    void DevicesChanged(WPARAM first);

    Parts parts_;
    NativeLoop& loop_;
    std::function<void()> close_;
};

}  // namespace marlok::win32
