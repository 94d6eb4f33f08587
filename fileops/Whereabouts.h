#pragma once

#include <string>

#include "platform/FileSystem.h"

/// Where things lie, whatever path they are named by: links, 8.3 aliases, substituted drives and shares of this machine
/// are seen through, by resolved path and by what the file system says that two folders are the same.
namespace marlok {

/// An answer that matters when it is yes, and when it cannot be had.
enum class Answer { no, yes, unknown };

/// Whether `path` is `folder` or lies below it.
[[nodiscard]] Answer WhetherInside(FileSystem& files, const std::string& path, const std::string& folder);

/// True when that is known.
[[nodiscard]] bool IsInside(FileSystem& files, const std::string& path, const std::string& folder);

/// True when that cannot be ruled out.
[[nodiscard]] bool MayBeInside(FileSystem& files, const std::string& path, const std::string& folder);

/// True when `path` lies in `folder` for certain: where links, aliases and substituted drives lead decides, not how the
/// paths are written. False when the system does not tell.
[[nodiscard]] bool IsSurelyInside(FileSystem& files, const std::string& path, const std::string& folder);

/// `path` with links, aliases and substituted drives resolved as far as it exists. What cannot be resolved stays as it
/// is written.
[[nodiscard]] std::string ResolvedPath(FileSystem& files, const std::string& path);

/// True for the codes that say that something is not there now: the file, its folder, the disk or the server.
[[nodiscard]] bool IsAbsent(SystemError code);

}  // namespace marlok
