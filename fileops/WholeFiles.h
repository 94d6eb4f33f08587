#pragma once

#include <string>
#include <string_view>

#include "platform/FileSystem.h"

/// Whole files, read and written as bytes.
namespace marlok {

/// Reads a whole file. On failure `bytes` holds what could be read.
[[nodiscard]] SystemError ReadWholeFile(FileSystem& files, const std::string& path, std::string& bytes);

/// Writes a whole file so that it is either the old one or the new one at any moment: written to a neighbour
/// ("~Marlok Backup.new" in the same folder), which then takes the file's name. Hidden or read-only files are replaced
/// too. On failure the old file is untouched and the neighbour is removed; a process that dies may leave the neighbour,
/// which the next write into that folder replaces. Fails with `error::sharingViolation` when the file is in use, where
/// renaming over it says no more than `error::accessDenied`.
[[nodiscard]] SystemError SaveWholeFile(FileSystem& files, const std::string& path, std::string_view bytes);

/// Removes what a process that died while it saved `path`, or another file of that folder, may have left beside it.
void ClearUnfinishedSave(FileSystem& files, const std::string& path);

}  // namespace marlok
