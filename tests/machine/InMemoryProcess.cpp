#include "tests/machine/InMemoryProcess.h"

namespace marlok::test {

bool InMemoryProcess::ClaimSingleInstance() {
    return faults_.Alive() && !otherInstanceRuns_;
}

SystemError InMemoryProcess::StartHidden(const std::string& programPath, const std::string& startArguments) {
    if (const SystemError code = faults_.Enter("StartHidden", programPath, false); code != error::success) {
        return code;
    }
    const Place place = disk_.Locate(programPath, InMemoryDisk::Follow::yes);
    if (place.node == nullptr) {
        return place.error;
    }
    if (place.node->IsFolder() || place.node->denied) {
        return error::accessDenied;
    }
    started_.push_back(programPath);
    startedArguments_.push_back(startArguments);
    return error::success;
}

std::string InMemoryProcess::Identification() {
    return std::to_string(processId) + " " + std::to_string(created);
}

void InMemoryProcess::AllowForeground() {
    if (faults_.Alive() && !started_.empty()) {
        ++foregroundsAllowed_;
    }
}

void InMemoryProcess::WriteError(const std::string& line) {
    if (faults_.Alive()) {
        errorLines_.push_back(line);
    }
}

}  // namespace marlok::test
