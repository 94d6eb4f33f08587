#pragma once

#include <functional>
#include <string>

#include "platform/FileSystem.h"

namespace marlok {

/// Called for each entry of a folder; false ends the listing there.
using EntryVisitor = std::function<bool(DirectoryEntry& entry)>;

/// Calls `visit` for every entry of `folder` but "." and "..", in the order of the file system. The visitor may take
/// the entry apart. Returns `error::success` when the listing came to its end or the visitor ended it, an empty drive's
/// root included; else why it could not begin, or broke off.
[[nodiscard]] SystemError ListFolder(FileSystem& files, const std::string& folder, const EntryVisitor& visit);

}  // namespace marlok
