#pragma once

#include <string>
#include <vector>

#include "platform/Process.h"
#include "tests/machine/FaultPlan.h"
#include "tests/machine/InMemoryDisk.h"

namespace marlok::test {

/// The running program as the in-memory machine sees it.
class InMemoryProcess : public Process {
 public:
    InMemoryProcess(InMemoryDisk& disk, FaultPlan& faults) : disk_(disk), faults_(faults) {}

    [[nodiscard]] std::string Arguments() override { return arguments; }
    [[nodiscard]] std::string ProgramFolder() override { return programFolder; }
    [[nodiscard]] std::string CurrentFolder() override { return disk_.currentFolder; }
    [[nodiscard]] bool ClaimSingleInstance() override;

    /// Recorded when the program file exists; else `error::fileNotFound` or `error::pathNotFound`.
    [[nodiscard]] SystemError StartHidden(const std::string& programPath) override;

    void WriteError(const std::string& line) override;

    void SetCurrentFolder(const std::string& folder) { disk_.currentFolder = folder; }

    /// Whether an instance of the program other than the tested one holds the claim.
    void SetOtherInstanceRuns(bool runs) { otherInstanceRuns_ = runs; }

    [[nodiscard]] const std::vector<std::string>& Started() const { return started_; }
    [[nodiscard]] const std::vector<std::string>& ErrorLines() const { return errorLines_; }

    std::string arguments;
    std::string programFolder = R"(C:\Program Files\Marlok)";

 private:
    InMemoryDisk& disk_;
    FaultPlan& faults_;
    bool otherInstanceRuns_ = false;
    std::vector<std::string> started_;
    std::vector<std::string> errorLines_;
};

}  // namespace marlok::test
