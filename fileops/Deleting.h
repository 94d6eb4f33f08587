#pragma once

#include <string>

#include "platform/FileSystem.h"

/// Deleting files and folders, for good and by the kernel alone: the shell takes "report." for "report", and pages and
/// the folders that belong to them together.
namespace marlok {

/// Deletes a file; a read-only one too.
[[nodiscard]] SystemError ForceDelete(FileSystem& files, const std::string& path);

/// Removes an empty folder; a read-only one too.
[[nodiscard]] SystemError RemoveEmptyFolder(FileSystem& files, const std::string& path);

/// Deletes a file, a link, or a folder with everything in it. Links go, what they lead to stays; a link that cannot be
/// removed stays, and so do the folders that it lies in. Returns the first error: `error::fileNotFound` or
/// `error::pathNotFound` when nothing is there. Roots are refused with `error::accessDenied`.
[[nodiscard]] SystemError DeleteWhole(FileSystem& files, const std::string& path);

/// Result codes of the Windows shell, which are no system errors.
namespace shellcode {
inline constexpr int success = 0;
inline constexpr int fileNotFound = 2;
inline constexpr int rootFolder = 0x74;
inline constexpr int accessDenied = 0x78;
inline constexpr int invalidFiles = 0x7C;  ///< the folder of what was named is missing
}  // namespace shellcode

/// Deletes what DeleteWhole deletes, and with wildcards in the last component everything that matches. Silent, without
/// confirmation, past the recycle bin. Returns what the shell returns for such a deletion (`shellcode::`), non-zero for
/// a missing path; raises nothing.
int DeleteThisFile(FileSystem& files, const std::string& path);

}  // namespace marlok
