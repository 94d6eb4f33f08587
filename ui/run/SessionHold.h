#pragma once

#include <cstdint>
#include <string>

#include "platform/Machine.h"

namespace marlok {

/// While one lives, a shutdown or log-off is held up with a reason that Windows shows; and when the session is to end
/// all the same, what goes on is asked to stop.
class SessionHold {
 public:
    /// `machine` outlives this object.
    SessionHold(Machine& machine, const std::string& reason) : machine_(machine) {
        machine_.desktop.BlockShutdown(reason);
    }
    SessionHold(const SessionHold&) = delete;
    SessionHold& operator=(const SessionHold&) = delete;
    ~SessionHold() { machine_.desktop.AllowShutdown(); }

    /// False once the session is going to end, from then on for good: what was stopped is not taken up again. Call it
    /// as often as you like.
    [[nodiscard]] bool GoOn() {
        const std::uint64_t now = machine_.clock.TickCount();
        if (!stopped_ && (!asked_ || now - lastAsked_ >= interval)) {
            asked_ = true;
            lastAsked_ = now;
            stopped_ = machine_.desktop.SessionEnding();
        }
        return !stopped_;
    }

 private:
    /// Milliseconds. Windows gives a program some seconds.
    static constexpr std::uint64_t interval = 100;

    Machine& machine_;
    bool asked_ = false;
    bool stopped_ = false;
    std::uint64_t lastAsked_ = 0;
};

}  // namespace marlok
