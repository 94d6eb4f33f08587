#pragma once

#include <cstdint>

#include "platform/Machine.h"

namespace marlok {

/// Lets the windows paint while something takes long, and never more often than is seen: call it as often as you like.
/// No input is delivered, so no handler runs.
class Breather {
 public:
    /// `interval` in milliseconds: how long windows may go without painting. `machine` outlives this object.
    explicit Breather(Machine& machine, std::uint64_t interval = usualInterval)
        : machine_(machine), interval_(interval) {}

    void operator()() {
        const std::uint64_t now = machine_.clock.TickCount();
        if (now - lastPaint_ >= interval_) {
            lastPaint_ = now;
            machine_.desktop.PaintPending();
        }
    }

 private:
    static constexpr std::uint64_t usualInterval = 50;

    Machine& machine_;
    std::uint64_t interval_;
    std::uint64_t lastPaint_ = 0;
};

}  // namespace marlok
