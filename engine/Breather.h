#pragma once

#include <cstdint>

#include "engine/Program.h"

namespace marlok {

/// Lets the windows paint while something takes long, and never more often than is seen: call it as often as you like.
/// No input is delivered, so no handler runs.
class Breather {
 public:
    explicit Breather(Program& program) : program_(program) {}

    void operator()() {
        const std::uint64_t now = program_.machine.clock.TickCount();
        if (now - lastPaint_ >= interval) {
            lastPaint_ = now;
            program_.machine.desktop.PaintPending();
        }
    }

 private:
    /// How long windows may go without painting, in milliseconds.
    static constexpr std::uint64_t interval = 50;

    Program& program_;
    std::uint64_t lastPaint_ = 0;
};

}  // namespace marlok
