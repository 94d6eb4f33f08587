#pragma once

#include "platform/Clock.h"

namespace marlok::win32 {

/// The system's clock. A file time beyond what the calendar of Windows covers becomes its first day.
class Win32Clock : public Clock {
 public:
    LocalTime Now() override;
    std::uint64_t TickCount() override;
    void Sleep(std::uint32_t milliseconds) override;
    LocalTime ToLocal(std::uint64_t fileTime) override;
};

}  // namespace marlok::win32
