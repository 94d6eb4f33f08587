#pragma once

#include <string>
#include <vector>

#include "engine/Breather.h"
#include "engine/CopyLoop.h"
#include "engine/Program.h"
#include "engine/RunReport.h"
#include "engine/SavePlaces.h"
#include "fileops/FolderScan.h"
#include "forms/TreeView.h"

namespace marlok {

/// What the two run windows do differently.
class RunWindow {
 public:
    virtual ~RunWindow() = default;

    [[nodiscard]] virtual SystemError CopyFile(const std::string& source, const std::string& destination,
                                               std::uint32_t flags) = 0;

    /// A status line for the user ("Copying Daily Files").
    virtual void ShowStatus(const std::string& text) = 0;

    /// Folders found so far below the sources of the current location, the sources included.
    virtual void ShowFolderCount(int count) = 0;
};

/// A whole backup, location by location. Errors inside a location are reported and never end the run. While the object
/// lives the machine does not go to sleep.
class BackupRun {
 public:
    BackupRun(Program& program, const RunControls& controls, forms::TreeView& TreeView1, RunWindow& window);
    BackupRun(const BackupRun&) = delete;
    BackupRun& operator=(const BackupRun&) = delete;
    ~BackupRun();

    /// Prepares the location (clears what a killed run left; in copy-all mode empties it; makes it when missing), backs
    /// up its sources, and adds what was copied to its list of original paths.
    void BackupLocation(const std::string& location);

    /// Writes "Backup Error Log.txt" or removes it, and sets the program's exit code. Call it once, at the end.
    void Finish();

    [[nodiscard]] const RunReport& Report() const { return report_; }

 private:
    void TryLocation(const std::string& location);
    void ClearKilledRun(const std::string& location);
    [[nodiscard]] bool PrepareFolder(const std::string& location);
    void EmptyLocation(const std::string& location);
    void BackupSources(CopyLoop& loop, const std::string& location);
    void TrySource(CopyLoop& loop, const std::string& location, const std::string& source);
    void BackupSource(CopyLoop& loop, const std::string& location, const std::string& source);
    [[nodiscard]] std::vector<FolderScan::Unlisted> ScanFolders(const std::string& location, const std::string& source);
    void ReportUnlisted(const std::vector<FolderScan::Unlisted>& folders);
    [[nodiscard]] bool WriteOriginalPaths(const std::string& location);

    Program& program_;
    RunControls controls_;
    forms::TreeView& TreeView1_;
    RunWindow& window_;
    RunReport report_;
    SavePlaces places_;
    ListedFolders listed_;
    int folderCount_ = 0;
    Breather breathe_;
};

}  // namespace marlok
