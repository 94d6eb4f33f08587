#pragma once

#include <string>

#include "platform/FileSystem.h"

namespace marlok {

/// Renames `from` to `to`, replacing an existing file, a read-only one too. On failure `to` is as it was.
[[nodiscard]] SystemError ForceReplace(FileSystem& files, const std::string& from, const std::string& to);

}  // namespace marlok
