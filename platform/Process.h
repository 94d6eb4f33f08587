#pragma once

#include <cstdint>
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

    /// The number the system has given this process. Another one may get it once this one has ended.
    [[nodiscard]] virtual std::uint32_t ProcessId() = 0;

    /// Two decimal numbers that no other process will ever have together, with a blank between them: ProcessId, and
    /// when the process was created, as a file time. What the restart program takes for arguments.
    [[nodiscard]] virtual std::string Identification() = 0;

    /// Starts a program with a hidden window from the folder it lies in, without waiting for it. `arguments` is the
    /// rest of its command line as it stands.
    [[nodiscard]] virtual SystemError StartHidden(const std::string& programPath, const std::string& arguments) = 0;

    /// Lets the program that StartHidden started last bring windows to the front once this one has ended. No effect
    /// when this program is not in front itself, or has started none.
    virtual void AllowForeground() = 0;

    /// Writes a line to standard error, if the program was given one.
    virtual void WriteError(const std::string& line) = 0;
};

}  // namespace marlok
