#pragma once

#include <string>

#include "platform/SystemError.h"

namespace marlok {

/// This running program, and other programs it starts.
class Process {
 public:
    virtual ~Process() = default;

    /// The command line without the program's own path and the blanks after it.
    [[nodiscard]] virtual std::string Arguments() = 0;

    /// The folder the program's file lies in, without trailing "\" (a drive root keeps its own).
    [[nodiscard]] virtual std::string ProgramFolder() = 0;

    [[nodiscard]] virtual std::string CurrentFolder() = 0;

    /// True for the first instance of the program in this session, which then holds the claim until it ends.
    [[nodiscard]] virtual bool ClaimSingleInstance() = 0;

    /// Starts a program with a hidden window from the folder it lies in, without waiting for it.
    [[nodiscard]] virtual SystemError StartHidden(const std::string& programPath) = 0;

    /// Writes a line to standard error, if the program was given one.
    virtual void WriteError(const std::string& line) = 0;
};

}  // namespace marlok
