#pragma once

#include <string>

namespace marlok::test {

struct CommandResult {
    unsigned long code = 0;  ///< the exit code; ~0 when the command could not be started
    std::string output;      ///< what it wrote to standard output
};

/// Runs a command to its end, without a window.
[[nodiscard]] CommandResult RunCommand(std::wstring commandLine);

}  // namespace marlok::test
