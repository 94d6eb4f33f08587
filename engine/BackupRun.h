#pragma once

#include <string>
#include <vector>

#include "engine/CopyLoop.h"
#include "engine/RunPlan.h"
#include "engine/RunReport.h"
#include "engine/RunSink.h"
#include "engine/SavePlaces.h"
#include "fileops/FolderScan.h"
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

    /// For each location: prepares it (clears what a killed run left; in copy-all mode empties it; makes it when
    /// missing), backs up its sources, and adds what was copied to its list of original paths. Call it once.
    [[nodiscard]] RunReport Run();

 private:
    void BackupLocation(const Location& location);
    void TryLocation(const Location& location);
    void ClearKilledRun(const Location& location);
    [[nodiscard]] bool PrepareFolder(const Location& location);
    void EmptyLocation(const Location& location);
    void BackupSources(CopyLoop& loop, const Location& location);
    void TrySource(CopyLoop& loop, const Location& location, const std::string& source);
    void BackupSource(CopyLoop& loop, const Location& location, const std::string& source);
    [[nodiscard]] FolderScan ScanSource(const Location& location, const std::string& source);
    void ReportUnlisted(const std::vector<FolderScan::Unlisted>& folders);
    [[nodiscard]] bool ListOriginals(const Location& location, const std::vector<std::string>& originals);

    Machine& machine_;
    BackupSettings settings_;
    const RunPlan& plan_;
    RunSink& sink_;
    RunReport report_;
    SavePlaces places_;
};

}  // namespace marlok
