#pragma once

#include <cstdint>

#include "engine/Program.h"

namespace marlok {

/// Lets the windows paint while something takes long, and never more often than is seen: call it as often as you like.
/// No input is delivered, so no handler runs.
class Breather {
 public:
    /// `interval` in milliseconds: how long windows may go without painting.
    explicit Breather(Program& program, std::uint64_t interval = usualInterval)
        : program_(program), interval_(interval) {}

    void operator()() {
        const std::uint64_t now = program_.machine.clock.TickCount();
        if (now - lastPaint_ >= interval_) {
            lastPaint_ = now;
            program_.machine.desktop.PaintPending();
        }
    }

 private:
    static constexpr std::uint64_t usualInterval = 50;

    Program& program_;
    std::uint64_t interval_;
    std::uint64_t lastPaint_ = 0;
};

}  // namespace marlok
