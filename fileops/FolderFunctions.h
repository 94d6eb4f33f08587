#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/FileSystem.h"
#include "platform/Process.h"
#include "platform/SystemInfo.h"

/// Paths as text, and the creation of nested folders. Nothing here holds state.
namespace marlok {

/// `path` with a "\" at its end; "" gives "\".
[[nodiscard]] std::string AddBackslash(std::string_view path);

/// `path` without the "\" at its end, if it has any; a drive root keeps its own.
[[nodiscard]] std::string WithoutBackslash(std::string_view path);

/// What follows the first component, as the shell function of this name finds it: "D:\Backups\Daily" gives
/// "Backups\Daily", "\\server\share" gives "server\share"; "" when no component follows. "/" does not separate.
[[nodiscard]] std::string_view PathFindNextComponent(std::string_view path);

/// The last component, as the shell function of this name finds it: "C:\A\b.txt" gives "b.txt", "C:\A\" gives "A\".
/// "\", "/" and ":" all separate.
[[nodiscard]] std::string_view PathFindFileName(std::string_view path);

[[nodiscard]] std::string FileNameOf(std::string_view path);

/// Path after its first component ("D:\Backups\Daily" -> "Backups\Daily"). "" for a bare drive root. Never fails; does
/// not touch the disk.
[[nodiscard]] std::string PathAfterRoot(std::string_view path);

/// The folder of a file: `path` without its last component and the "\" before it; a drive root keeps its "\". "" when
/// there is no "\".
[[nodiscard]] std::string FolderOf(std::string_view path);

/// True for a path that begins with a drive root such as "C:\".
[[nodiscard]] bool HasDriveRoot(std::string_view path);

/// True for a path that begins with two "\".
[[nodiscard]] bool IsNetworkPath(std::string_view path);

/// True when `path` is an existing folder.
[[nodiscard]] bool IsDirectoryPath(FileSystem& files, const std::string& path);

/// True when a listing of exactly `path` yields a normal file: no folder, neither hidden nor system. Errors give false.
[[nodiscard]] bool FileExists(FileSystem& files, const std::string& path);

/// Cuts the first token with its delimiter off `text` and returns it; "" when there is no delimiter, and `text` stays.
[[nodiscard]] std::string NextToken(std::string& text, std::string_view delimiter);

/// Starts a listing of everything in `folder`; null when it does not exist or cannot be listed.
[[nodiscard]] std::unique_ptr<FolderSearch> OpenFolderSearch(FileSystem& files, const std::string& folder,
                                                             DirectoryEntry& first);

/// Creates every missing folder of `path`. A path without drive or network root starts at the current folder. Returns
/// whether the folder can be listed afterwards; why a folder could not be created is not told.
[[nodiscard]] bool CreateNestedFolders(FileSystem& files, Process& process, const std::string& path);

/// Makes the folder for a file that is going to be written to `path`. A path without a three-letter extension is itself
/// taken for the folder, whatever its extension ("E:\Saved\page.html" becomes a folder): deliberate.
void EnsureFolderFor(FileSystem& files, Process& process, const std::string& path);

/// Creates one folder and returns its path.
/// @throws RuntimeError 58 when something of that name exists, 76 when the parent is missing, else as Raise tells.
std::string CreateFolder(FileSystem& files, const std::string& path);

/// When a folder was created, as text ("2026-11-20 21:05:00", local time); "" when there is no folder of that name.
class Clock;
[[nodiscard]] std::string FolderCreationDate(FileSystem& files, Clock& clock, const std::string& path);

/// The original path of a saved file, sought in the list of original paths `list`. `name` is the original path without
/// its drive root. The first occurrence counts, also inside a longer line; letter case matters. The column at which the
/// first drive root of the list stands is taken for every line: deliberate. "" and `gSearchOn` false when `name` does
/// not occur; "" and `gSearchOn` as it was when the list's first 200 characters hold no drive root.
/// @throws RuntimeError when the list exists and cannot be read.
[[nodiscard]] std::string FindOriginalPath(FileSystem& files, SystemInfo& system, const std::string& list,
                                           const std::string& name, bool& gSearchOn);

/// The original path that `name`, found at `place` (bytes) of the text of a list of original paths, is the end of: by
/// the column of the list's first drive root, as above. "" when the first 200 characters hold none, or too little
/// stands before `place`.
[[nodiscard]] std::string OriginalPathAt(std::string_view text, std::size_t place, const std::string& name);

/// A copy of a zero-terminated text in the system's code page; "" for null.
[[nodiscard]] std::string StringFromPointer(SystemInfo& system, const char* text);

}  // namespace marlok
