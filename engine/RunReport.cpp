#include "engine/RunReport.h"

#include "fileops/Errors.h"

namespace marlok {

std::string ReasonOf(SystemInfo& system, const RunReport::Line& line) {
    return line.reason.empty() ? Describe(system, line.code) : line.reason;
}

}  // namespace marlok
