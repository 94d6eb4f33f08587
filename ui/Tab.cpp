#include "ui/Tab.h"

#include <algorithm>

#include "engine/RunLog.h"
#include "paths/ProgramFiles.h"

namespace marlok::ui {

namespace {

/// At most so many failures are shown in a box; the rest is in the error log.
constexpr std::size_t mostLinesShown = 5;

}  // namespace

int Tab::Tell(const std::string& text, std::uint32_t style, const std::string& title) const {
    return session_.machine.desktop.ShowMessage(text, style, title);
}

void Tab::TellUnlessStored(bool stored) const {
    if (!stored) {
        Tell(
            "The List Could Not Be Stored In The Registry\r\n\r\nIt will not be there when the program is started "
            "again.");
    }
}

void Tab::TellFailure(const std::string& path, const std::string& what, const std::string& reason) const {
    Tell(path + "\r\n\r\n Could Not Be " + what + "\r\n\r\n" + reason);
}

void Tab::TellAll(const RunReport& report) const {
    const auto& lines = report.Lines();
    if (lines.empty()) {
        return;
    }
    const SystemError logged = WriteErrorLog(session_.machine, report);
    std::string text;
    for (std::size_t i = 0; i < std::min(mostLinesShown, lines.size()); ++i) {
        text += lines[i].path + "\r\n    " + ReasonOf(session_.machine.system, lines[i]) + "\r\n";
    }
    if (lines.size() > mostLinesShown && logged == error::success) {
        text += "\r\nAll " + std::to_string(lines.size()) + " are listed in \"" + programfile::errorLog + "\".";
    }
    Tell(text);
}

bool Tab::FillLocations(forms::ListBox& list) const {
    list.Clear();
    for (const Location& location : session_.Configuration().Locations()) {
        list.AddItem(location.Path());
    }
    return list.ListCount() > 0;
}

}  // namespace marlok::ui
