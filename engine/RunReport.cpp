#include "engine/RunReport.h"

#include "fileops/Errors.h"

namespace marlok {

std::string ReasonOf(SystemInfo& system, const RunReport::Line& line) {
    return line.reason.empty() ? Describe(system, line.code) : line.reason;
}

std::string ErrorLogText(SystemInfo& system, const RunReport& report) {
    std::string text;
    for (const RunReport::Line& line : report.Lines()) {
        text += line.path + ": " + ReasonOf(system, line) + "\r\n";
    }
    return text;
}

}  // namespace marlok
