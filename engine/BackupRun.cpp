#include "engine/BackupRun.h"

#include <utility>

#include "engine/BackupReport.h"
#include "engine/LocationRun.h"
#include "platform/RuntimeError.h"

namespace marlok {

BackupRun::BackupRun(Machine& machine, BackupSettings settings, const RunPlan& plan, RunSink& sink)
    : machine_(machine), settings_(settings), plan_(plan), sink_(sink), places_(machine, settings) {
    machine_.system.KeepAwake(true);
}

BackupRun::~BackupRun() {
    machine_.system.KeepAwake(false);
}

RunReport BackupRun::Run() {
    const std::uint64_t start = machine_.clock.TickCount();
    report_.start = machine_.clock.Now();
    for (const RunReport::Line& line : plan_.atStart.Lines()) {
        report_.Note(line.path, ReasonOf(machine_.system, line));
    }
    for (const Location& location : plan_.locations) {
        if (!sink_.GoOn()) {
            break;
        }
        const std::size_t before = report_.Lines().size();
        BackupLocation(location);
        report_.outcomes.push_back({location.Path(), report_.Lines().size() == before && sink_.GoOn()});
    }
    report_.milliseconds = machine_.clock.TickCount() - start;
    WriteBackupReport(machine_, settings_.Locations(), report_);
    return std::move(report_);
}

void BackupRun::BackupLocation(const Location& location) {
    sink_.LocationBegins(location);
    const std::string refused = location.WhyRefused();
    if (!refused.empty()) {
        report_.Add(location.Path(), "this backup location was passed over: " + refused);
        return;
    }
    try {
        LocationRun({machine_, plan_, places_, sink_, report_}, location).Run(settings_.Sources(location));
    } catch (const RuntimeError& error) {
        report_.Add(location.Path(),
                    std::string(error.what()) + " (run-time error " + std::to_string(error.Number()) + ")");
    }
}

}  // namespace marlok
