#pragma once

#include <cstdint>
#include <vector>

#include "platform/Desktop.h"

namespace marlok {

/// Closes the windows of another process, so that it ends by itself.
class StopProc {
 public:
    /// The process whose windows are to be closed; 0 for none.
    std::uint32_t processId = 0;

    /// Asks every top-level window of the process that has no parent to close, in the order in which the system lists
    /// them, one after the other.
    void CloseProcessWindows(Desktop& desktop);

    /// The windows that were found.
    [[nodiscard]] const std::vector<std::uint64_t>& Found() const { return found_; }

 private:
    std::vector<std::uint64_t> found_;
};

}  // namespace marlok
