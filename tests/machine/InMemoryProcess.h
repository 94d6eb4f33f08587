#pragma once

#include <cstdint>
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
    [[nodiscard]] SystemError StartHidden(const std::string& programPath, const std::string& startArguments) override;

    [[nodiscard]] std::uint32_t ProcessId() override { return processId; }
    [[nodiscard]] std::string Identification() override;

    /// Counted when a program has been started that can be meant.
    void AllowForeground() override;

    void WriteError(const std::string& line) override;

    void SetCurrentFolder(const std::string& folder) { disk_.currentFolder = folder; }

    /// Whether an instance of the program other than the tested one holds the claim.
    void SetOtherInstanceRuns(bool runs) { otherInstanceRuns_ = runs; }

    [[nodiscard]] const std::vector<std::string>& Started() const { return started_; }
    /// What the started programs got for arguments, in the order of Started.
    [[nodiscard]] const std::vector<std::string>& StartedArguments() const { return startedArguments_; }
    [[nodiscard]] int ForegroundsAllowed() const { return foregroundsAllowed_; }
    [[nodiscard]] const std::vector<std::string>& ErrorLines() const { return errorLines_; }

    std::string arguments;
    std::string programFolder = R"(C:\Program Files\Marlok)";
    std::uint32_t processId = 4711;
    std::uint64_t created = At(11, 59);  ///< when this process was

 private:
    InMemoryDisk& disk_;
    FaultPlan& faults_;
    bool otherInstanceRuns_ = false;
    std::vector<std::string> started_;
    std::vector<std::string> startedArguments_;
    int foregroundsAllowed_ = 0;
    std::vector<std::string> errorLines_;
};

}  // namespace marlok::test
