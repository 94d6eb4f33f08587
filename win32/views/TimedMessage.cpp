#include "win32/views/TimedMessage.h"

#include <array>
#include <stdexcept>
#include <string_view>

#include "platform/Desktop.h"
#include "win32/machine/Wide.h"
#include "win32/views/WindowText.h"

namespace marlok::win32 {

namespace {

/// The class of the system's dialogs, message boxes among them.
constexpr std::wstring_view dialogClass = L"#32770";

/// Presses the button of the box with `title` on this thread once the time is over; tries again as long as the box is
/// not there yet. Ends with its destruction.
class BoxTimer {
 public:
    BoxTimer(std::wstring title, int button, std::uint32_t milliseconds) : title_(std::move(title)), button_(button) {
        if (current != nullptr) {
            throw std::logic_error("a message box that closes by itself is being shown already");
        }
        current = this;
        // Without a timer the box waits for the user, which is all that can be done then.
        timer_ = SetTimer(nullptr, 0, milliseconds, &BoxTimer::Over);
    }
    BoxTimer(const BoxTimer&) = delete;
    BoxTimer& operator=(const BoxTimer&) = delete;
    ~BoxTimer() {
        KillTimer(nullptr, timer_);
        current = nullptr;
    }

 private:
    // Nothing may be thrown through the system's frames that called this.
    static void CALLBACK Over(HWND, UINT, UINT_PTR, DWORD) noexcept {
        if (current != nullptr) {
            EnumThreadWindows(GetCurrentThreadId(), &BoxTimer::Press, reinterpret_cast<LPARAM>(current));
        }
    }

    static BOOL CALLBACK Press(HWND window, LPARAM data) noexcept {
        const auto& self = *reinterpret_cast<const BoxTimer*>(data);
        std::array<wchar_t, dialogClass.size() + 2> kind{};
        GetClassNameW(window, kind.data(), static_cast<int>(kind.size()));
        HWND button = GetDlgItem(window, self.button_);
        if (kind.data() != dialogClass || button == nullptr || WindowText(window) != self.title_) {
            return TRUE;
        }
        PostMessageW(window, WM_COMMAND, MAKEWPARAM(self.button_, BN_CLICKED), reinterpret_cast<LPARAM>(button));
        return FALSE;
    }

    /// A timer procedure is told nothing that is ours: this is how it finds the box.
    static inline thread_local BoxTimer* current = nullptr;

    std::wstring title_;
    int button_;
    UINT_PTR timer_ = 0;
};

}  // namespace

int ShowTimedMessage(HWND owner, const std::string& text, std::uint32_t style, const std::string& title,
                     std::uint32_t milliseconds) {
    const std::wstring wideTitle = ToWide(title);
    const BoxTimer timer(wideTitle, DefaultButton(style), milliseconds);
    return MessageBoxW(owner, ToWide(text).c_str(), wideTitle.c_str(), style);
}

}  // namespace marlok::win32
