#pragma once

#include <chrono>
#include <functional>

namespace marlok::test {

/// Asks again and again until `condition` holds or `limit` is over; returns whether it held. Between two questions it
/// calls `meanwhile`, by default a short pause.
[[nodiscard]] bool WaitUntil(const std::function<bool()>& condition,
                             std::chrono::milliseconds limit = std::chrono::seconds(20),
                             const std::function<void()>& meanwhile = {});

}  // namespace marlok::test
