#pragma once

#include <string>

#include "platform/SystemInfo.h"

namespace marlok {

/// The machine's connection to the Internet in words; "Not Connected" without one, and "" for a dial-up line or a
/// machine that works offline. Never fails.
[[nodiscard]] std::string ConnectionDescription(SystemInfo& system);

}  // namespace marlok
