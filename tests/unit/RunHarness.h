#pragma once

#include <string>
#include <vector>

#include "engine/BackupRun.h"
#include "tests/machine/Program.h"
#include "tests/unit/ProgramFixture.h"

namespace marlok::test {

/// Runs locations without a window, and keeps what the run told.
class RunHarness : private RunSink {
 public:
    explicit RunHarness(InMemoryMachine& on) : program(on.machine()) {}

    /// Backs up these locations in a run of their own and ends it, as the run windows do.
    RunReport Backup(const Lines& locations) {
        RunPlan plan;
        plan.allFiles = program.session.gAllFiles;
        for (const std::string& location : locations) {
            plan.locations.emplace_back(location);
        }
        RunReport report = BackupRun(program.session.machine, program.session.Configuration(), plan, *this).Run();
        program.session.exitCode = FinishRun(program.session.machine, unattendedLog, report);
        return report;
    }

    Program program;
    Lines statuses;                    ///< what was shown to the user, in order
    std::vector<std::size_t> folders;  ///< how many each scan found

 private:
    void Status(const std::string& text) override { statuses.push_back(text); }
    void FoldersFound(const FolderScan& scan) override { folders.push_back(scan.folders.size()); }
};

}  // namespace marlok::test
