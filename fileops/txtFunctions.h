#pragma once

#include <string>
#include <string_view>

#include "platform/FileSystem.h"
#include "platform/SystemInfo.h"

/// Whole text files, read and written. Text files of the program are UTF-8 without a byte order mark.
namespace marlok {

/// Reads a whole file as bytes.
[[nodiscard]] SystemError ReadWholeFile(FileSystem& files, const std::string& path, std::string& bytes);

/// `bytes` of a text file as UTF-8. A line that is not valid UTF-8 is taken as the system's code page: lines of an
/// older file and lines added since may stand in one file. A byte order mark is dropped.
[[nodiscard]] std::string DecodeText(SystemInfo& system, std::string bytes);

/// The whole text of a file, line breaks kept; "" for a missing or an empty one.
/// @throws RuntimeError when the file exists and cannot be read.
[[nodiscard]] std::string ReadTextFile(FileSystem& files, SystemInfo& system, const std::string& path);

/// Writes a whole file so that it is either the old one or the new one at any moment: written to a neighbour
/// ("~Marlok Backup.new" in the same folder), which then takes the file's name. Hidden or read-only files are replaced
/// too. On failure the old file is untouched and the neighbour is removed; a process that dies may leave the neighbour,
/// which the next write into that folder replaces.
[[nodiscard]] SystemError SaveWholeFile(FileSystem& files, const std::string& path, std::string_view bytes);

/// Removes what a process that died while it saved `path`, or another file of that folder, may have left beside it.
void ClearUnfinishedSave(FileSystem& files, const std::string& path);

/// Deletes a file; a read-only one too.
[[nodiscard]] SystemError ForceDelete(FileSystem& files, const std::string& path);

/// Renames `from` to `to`, replacing an existing file, a read-only one too. On failure `to` is as it was.
[[nodiscard]] SystemError ForceReplace(FileSystem& files, const std::string& from, const std::string& to);

}  // namespace marlok
