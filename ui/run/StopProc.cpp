#include "ui/run/StopProc.h"

namespace marlok {

void StopProc::CloseProcessWindows(Desktop& desktop) {
    found_.clear();
    if (processId == 0) {
        return;
    }
    for (const Desktop::TopLevelWindow& window : desktop.TopLevelWindows()) {
        if (window.processId == processId && !window.hasParent) {
            found_.push_back(window.handle);
        }
    }
    for (const std::uint64_t window : found_) {
        desktop.CloseWindow(window);
    }
}

}  // namespace marlok
