#include "engine/BackupRun.h"

#include <utility>

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
    report_.configured = settings_.Locations();
    for (const Location& location : plan_.locations) {
        if (!sink_.GoOn()) {
            break;
        }
        const std::size_t before = report_.Lines().size();
        const bool ended = BackupLocation(location);
        report_.outcomes.push_back({location.Path(), ended && report_.Lines().size() == before});
    }
    report_.milliseconds = machine_.clock.TickCount() - start;
    return std::move(report_);
}

/// False when it was passed over, or the sink has stopped it.
bool BackupRun::BackupLocation(const Location& location) {
    sink_.LocationBegins(location);
    const std::string refused = location.WhyRefused();
    if (!refused.empty()) {
        report_.Add(location.Path(), "this backup location was passed over: " + refused);
        return false;
    }
    try {
        return LocationRun({machine_, plan_, places_, sink_, report_}, location).Run(settings_.Sources(location));
    } catch (const RuntimeError& error) {
        report_.Add(location.Path(),
                    std::string(error.what()) + " (run-time error " + std::to_string(error.Number()) + ")");
    }
    return false;
}

}  // namespace marlok
