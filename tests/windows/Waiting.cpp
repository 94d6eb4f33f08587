#include "tests/windows/Waiting.h"

#include <windows.h>

namespace marlok::test {

bool WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit,
               const std::function<void()>& meanwhile) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return condition();
        }
        if (meanwhile) {
            meanwhile();
        } else {
            Sleep(5);
        }
    }
    return true;
}

}  // namespace marlok::test
