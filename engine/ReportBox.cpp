#include "engine/ReportBox.h"

#include <algorithm>

#include "paths/ProgramFiles.h"

namespace marlok {

namespace {

/// A box with more lines would not fit a small screen.
constexpr std::size_t mostLinesShown = 5;

}  // namespace

std::string ReportBoxText(SystemInfo& system, const RunReport& report, bool logged) {
    const auto& lines = report.Lines();
    std::string text;
    for (std::size_t i = 0; i < std::min(mostLinesShown, lines.size()); ++i) {
        text += lines[i].path + "\r\n    " + ReasonOf(system, lines[i]) + "\r\n";
    }
    if (lines.size() > mostLinesShown && logged) {
        text += "\r\nAll " + std::to_string(lines.size()) + " are listed in \"" + programfile::errorLog + "\".";
    }
    return text;
}

}  // namespace marlok
