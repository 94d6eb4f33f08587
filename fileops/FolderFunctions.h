#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/Process.h"
#include "platform/SystemInfo.h"

/// Whether folders and files exist, and the creation of folders. Nothing here holds state.
namespace marlok {

/// True when `path` is an existing folder.
[[nodiscard]] bool IsDirectoryPath(FileSystem& files, const std::string& path);

/// True when a listing of exactly `path` yields a normal file: no folder, neither hidden nor system. Errors give false.
[[nodiscard]] bool FileExists(FileSystem& files, const std::string& path);

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
[[nodiscard]] std::string FolderCreationDate(FileSystem& files, Clock& clock, const std::string& path);

/// A copy of a zero-terminated text in the system's code page; "" for null.
[[nodiscard]] std::string StringFromPointer(SystemInfo& system, const char* text);

}  // namespace marlok
