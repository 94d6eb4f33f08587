#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "engine/RunLog.h"
#include "engine/RunReport.h"
#include "paths/Location.h"
#include "platform/Machine.h"
#include "ui/run/SessionHold.h"

namespace marlok {

/// A run of a window, from its begin to its records. The end of the session is held up meanwhile, and stops the run
/// when it comes all the same; and log, shortcut and error log are written once, however the window ends.
class RunKeeper {
 public:
    /// `machine` and `form` outlive this object.
    RunKeeper(Machine& machine, const LogForm& form) : machine_(machine), form_(form) {}

    /// A run begins. What a run before has reported is forgotten.
    void Begin();

    /// The run has come to this location.
    void Enter(const Location& location) { place_ = location.Path(); }

    /// False when the run has to stop.
    [[nodiscard]] bool GoOn();

    /// The copying is over, and this is what became of it. When the session ends the records are written at once: there
    /// may be no later.
    void Copied(RunReport report);

    /// Writes the records, unless they are written already or there is nothing to record, and lets the session end.
    /// Returns the exit code of the run.
    int Finish();

    /// The copying is over, and Finish has not written its records yet.
    [[nodiscard]] bool IsToBeRecorded() const { return toBeRecorded_; }

    [[nodiscard]] const RunReport& Report() const { return report_; }

 private:
    Machine& machine_;
    const LogForm& form_;
    std::optional<SessionHold> hold_;  ///< while the run lasts
    std::string place_;                ///< the location that the run has come to
    std::size_t notesBefore_ = 0;      ///< that the error log held when the run began
    RunReport report_;
    bool stopped_ = false;  ///< the run was told to stop before its end
    bool toBeRecorded_ = false;
    int exitCode_ = exitcode::allDone;
};

}  // namespace marlok
