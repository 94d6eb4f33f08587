#pragma once

#include <windows.h>

#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "win32/views/SessionWatch.h"

namespace marlok::win32 {

/// What all windows on the screen share: the queue of the user's actions, and the state of the pointer.
///
/// A window procedure never runs a handler of the program. It posts the action here, and the action runs when the
/// procedure has returned, from Win32Desktop::WaitForInput alone. So no handler runs inside another one, none
/// runs while windows merely repaint or a message box is open, a handler may unload its own window, and what it throws
/// never meets a frame of the operating system.
class NativeLoop {
 public:
    using Action = std::function<void()>;

    /// A window that takes part: what the loop asks of it. All of them are called outside window procedures.
    class Member {
     public:
        Member() = default;
        Member(const Member&) = delete;
        Member& operator=(const Member&) = delete;
        virtual ~Member() = default;

        [[nodiscard]] virtual HWND Window() const = 0;

        /// Mirrors what the controls have put off.
        virtual void Flush() = 0;

        /// Shows the frames of moving pictures that are due.
        virtual void Animate() = 0;

        /// Milliseconds until a picture moves; NativeControl::never while none does.
        [[nodiscard]] virtual std::uint32_t NextFrameIn() const = 0;

        /// Acts on a message of the keyboard before one of the window's controls gets it. False when it goes its usual
        /// way.
        [[nodiscard]] virtual bool TakesKey(const MSG& message) = 0;
    };

    /// Queues an action of the user in a window of `owner`.
    void Post(const Member& owner, Action action);

    /// Drops what the user did and no handler has seen yet; notices of the system stay.
    void DiscardInput();

    /// While one lives, what is queued is no doing of the user's but a notice of the system.
    class Notices {
     public:
        explicit Notices(NativeLoop& loop) : loop_(loop) { loop_.postsNotices_ = true; }
        Notices(const Notices&) = delete;
        Notices& operator=(const Notices&) = delete;
        ~Notices() { loop_.postsNotices_ = false; }

     private:
        NativeLoop& loop_;
    };

    /// Runs what is queued, in its order, and anything it queues. What an action throws leaves this call; the rest
    /// stays queued. False when there was nothing.
    bool RunPosted();

    /// Keeps what a handler threw inside a window procedure; the first one counts.
    void Keep(std::exception_ptr thrown);

    /// Throws what was kept, once.
    void RethrowKept();

    /// `form` outlives the loop, or is removed.
    void Add(Member& form);

    /// Takes `form` out, with the actions queued for it.
    void Remove(const Member& form);

    /// Brings every window's lists up to date.
    void Flush();

    /// Shows the frames of moving pictures that are due.
    void Animate();

    /// Milliseconds until a picture moves, no more than `limit`.
    [[nodiscard]] std::uint32_t NextFrameIn(std::uint32_t limit) const;

    /// Acts on a message of the keyboard before its window gets it. False when it goes its usual way.
    [[nodiscard]] bool TakesKey(MSG& message) const;

    /// The active window, else the last visible one; null when the program shows none.
    [[nodiscard]] HWND ActiveWindow() const;

    /// The end of the session is held up for the sake of every window, and is not any more.
    void BlockShutdown(const std::wstring& reason);
    void AllowShutdown();

    /// What the windows ask about the messages of an ending session.
    [[nodiscard]] SessionWatch& Session() { return session_; }

    void SetHourglass(bool on) { hourglass_ = on; }
    [[nodiscard]] bool Hourglass() const { return hourglass_; }

 private:
    [[nodiscard]] Member* FormOf(HWND window) const;

    struct Posted {
        const Member* owner;
        Action action;
        bool notice;
    };
    [[nodiscard]] std::vector<HWND> Windows() const;

    std::deque<Posted> posted_;
    std::exception_ptr kept_;
    std::vector<Member*> forms_;  ///< not owned
    SessionWatch session_;
    bool postsNotices_ = false;
    bool hourglass_ = false;
};

}  // namespace marlok::win32
