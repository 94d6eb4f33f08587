#pragma once

#include <string>

#include "platform/Machine.h"

namespace marlok {

/// Copies a saved file back to where it came from; missing folders on the way are made. What is there stays whole until
/// its replacement is complete: the copy is written beside it and takes its name at the end. Returns "" for success,
/// else why the original was not replaced, as a sentence for the user.
[[nodiscard]] std::string RestoreFile(Machine& machine, const std::string& saved, const std::string& original);

}  // namespace marlok
