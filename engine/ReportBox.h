#pragma once

#include <string>

#include "engine/RunReport.h"
#include "platform/SystemInfo.h"

namespace marlok {

/// What a message box says about a report: its first lines, each path above its reason; and where all of them are
/// listed, when there are more and `logged` says that the error log has been written.
[[nodiscard]] std::string ReportBoxText(SystemInfo& system, const RunReport& report, bool logged);

}  // namespace marlok
