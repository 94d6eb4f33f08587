#pragma once

#include "platform/SystemInfo.h"

/// Which Windows this is. Each test asks the system afresh and is false when the system does not answer.
namespace marlok {

[[nodiscard]] bool IsWindows95(SystemInfo& system);

/// Windows 98 and Windows ME alike.
[[nodiscard]] bool IsWindows98(SystemInfo& system);

[[nodiscard]] bool IsWindowsME(SystemInfo& system);

/// Windows 2000 and Windows XP alike.
[[nodiscard]] bool IsWindows2000(SystemInfo& system);

[[nodiscard]] bool IsWindowsXP(SystemInfo& system);

}  // namespace marlok
