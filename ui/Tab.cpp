#include "ui/Tab.h"

#include <algorithm>
#include <span>

#include "engine/ReportBox.h"
#include "engine/RunLog.h"
#include "engine/SharedPlaces.h"

namespace marlok::ui {

namespace {

/// At most so many shared places are shown in a box.
constexpr std::size_t mostShown = 5;

std::span<const SharedPlace> Few(const std::vector<SharedPlace>& shared) {
    return std::span(shared).first(std::min(mostShown, shared.size()));
}

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
    if (!report.Lines().empty()) {
        const bool logged = WriteErrorLog(session_.machine, report) == error::success;
        Tell(ReportBoxText(session_.machine.system, report, logged));
    }
}

void Tab::TellSharedPlaces(const Location& location, const std::vector<std::string>& sources) const {
    const std::vector<SharedPlace> shared = FindSharedPlaces(session_.Configuration(), location, sources);
    if (shared.empty()) {
        return;
    }
    std::string text;
    for (const SharedPlace& each : Few(shared)) {
        text += each.source + "\r\nAnd " + each.other + "\r\nAre Saved In The Same Place: " + each.place + "\r\n\r\n";
    }
    if (shared.size() > mostShown) {
        text += "So Are " + std::to_string(shared.size() - mostShown) + " More.\r\n\r\n";
    }
    Tell(text +
         "Of two files that have one path there, only one is kept. Choose another backup location for one of them.");
}

bool Tab::FillLocations(forms::ListBox& list) const {
    list.Clear();
    for (const Location& location : session_.Configuration().Locations()) {
        list.AddItem(location.Path());
    }
    return list.ListCount() > 0;
}

}  // namespace marlok::ui
