#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "win32/machine/Handles.h"

namespace marlok::win32 {

/// What the program has to say when the session is to end, by a shutdown or because the user logs off: on behalf of all
/// its windows, and of a hidden one for runs that show none. Lives on the thread that owns the windows.
class SessionWatch {
 public:
    SessionWatch() = default;
    SessionWatch(const SessionWatch&) = delete;
    SessionWatch& operator=(const SessionWatch&) = delete;
    ~SessionWatch();

    /// Holds the end of the session up, with a reason that the system shows. `windows` are the program's own.
    void Block(const std::wstring& reason, const std::vector<HWND>& windows);
    void Allow(const std::vector<HWND>& windows);

    /// A window that is new while the end is held up.
    void Add(HWND window) const;

    /// Answers a message of any of the program's windows. False when it is none of the two that belong here.
    [[nodiscard]] bool Answer(UINT message, WPARAM first, LRESULT& answer);

    /// True once the end was announced, until it is called off.
    [[nodiscard]] bool Ending() const { return ending_; }

 private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM first, LPARAM second) noexcept;
    void MakeHidden();

    std::wstring reason_;  ///< "" while nothing is held up
    bool blocked_ = false;
    bool ending_ = false;
    WindowHandle hidden_;  ///< a top-level window that is never shown
};

}  // namespace marlok::win32
