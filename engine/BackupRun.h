#pragma once

#include "engine/RunPlan.h"
#include "engine/RunReport.h"
#include "engine/RunSink.h"
#include "engine/SavePlaces.h"
#include "paths/Location.h"
#include "platform/Machine.h"
#include "settings/BackupSettings.h"

namespace marlok {

/// A whole backup, location by location. Errors inside a location are reported and never end the run. While the object
/// lives the machine does not go to sleep.
class BackupRun {
 public:
    /// `machine`, `plan` and `sink` outlive this object; the sources of a location are read from `settings` when it is
    /// its turn.
    BackupRun(Machine& machine, BackupSettings settings, const RunPlan& plan, RunSink& sink);
    BackupRun(const BackupRun&) = delete;
    BackupRun& operator=(const BackupRun&) = delete;
    ~BackupRun();

    /// Runs each location (see LocationRun). Call it once. What a run leaves for its user is written by FinishRun.
    [[nodiscard]] RunReport Run();

 private:
    [[nodiscard]] bool BackupLocation(const Location& location);

    Machine& machine_;
    BackupSettings settings_;
    const RunPlan& plan_;
    RunSink& sink_;
    RunReport report_;
    SavePlaces places_;
};

}  // namespace marlok
