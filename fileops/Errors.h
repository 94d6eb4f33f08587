#pragma once

#include <string>

#include "platform/SystemError.h"
#include "platform/SystemInfo.h"

namespace marlok {

/// Throws the RuntimeError with the classic number of a system error: 53 file not found, 58 file already exists, 61
/// disk full, 70 permission denied, 76 path not found, 75 for any other.
[[noreturn]] void Raise(SystemError code);

/// The same, with a description that names what could not be worked on, and why.
[[noreturn]] void Raise(SystemInfo& system, SystemError code, const std::string& path);

/// A sentence for the user about a system error, in English, ending in the code: "access was denied (error 5)".
[[nodiscard]] std::string Describe(SystemInfo& system, SystemError code);

}  // namespace marlok
