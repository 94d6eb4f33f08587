#pragma once

#include <string>
#include <string_view>

#include "platform/FileSystem.h"

namespace marlok {

/// True for what the system keeps for itself in the root of a drive or a share: the folders called "$RECYCLE.BIN",
/// "RECYCLER" or "System Volume Information", and every other folder there that is both hidden and system. `entry` is
/// one that a listing of `folder` has returned. False for files, and for whatever does not lie straight in a root.
[[nodiscard]] bool IsSystemFolderOfRoot(const DirectoryEntry& entry, std::string_view folder);

/// True when `path` is such a folder, or lies in one. False for what is not there.
[[nodiscard]] bool LiesInSystemFolderOfRoot(FileSystem& files, const std::string& path);

}  // namespace marlok
