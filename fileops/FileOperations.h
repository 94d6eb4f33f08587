#pragma once

#include <functional>
#include <string>

#include "forms/Controls.h"
#include "platform/FileSystem.h"
#include "platform/Shell.h"

/// Copying and deleting of files and folders.
namespace marlok {

/// Copies a file or folder by the shell: silent, answering yes to every question. Returns the shell's code, 0 for
/// success; raises nothing.
[[nodiscard]] int CopyThisFile(Shell& shell, const std::string& source, const std::string& destination);

/// Deletes a file, or a folder with everything in it, permanently, by the shell: silent, without confirmation, past the
/// recycle bin. Wildcards in the last component delete everything that matches. A folder link goes, what it leads to
/// stays: links are taken out of a tree before the shell sees it, because the shell of some systems deletes through
/// them; where a link cannot be removed, it and the folders above it stay. What the shell leaves (paths too long for
/// it) the kernel deletes. A drive's root is refused. Returns 0 for success, else the shell's code, or the system's
/// where the shell was not asked; raises nothing.
[[nodiscard]] int DeleteThisFile(FileSystem& files, Shell& shell, const std::string& path);

/// Copies one file; an existing destination is overwritten. `bar` shows the bytes of this file; `meanwhile`, when it is
/// not empty, is called whenever the bar has moved. Every one of the three copies takes extra `copyflag::` bits, and
/// returns `error::success` or why it failed.
[[nodiscard]] SystemError CopyWithProgress(FileSystem& files, const std::string& source, const std::string& destination,
                                           forms::ProgressBar& bar, std::uint32_t flags = copyflag::none,
                                           const std::function<void()>& meanwhile = {});

/// The same; `bar` counts copied files from 1 to 99 and starts again at 1: it shows that something goes on.
[[nodiscard]] SystemError CopyCountingFiles(FileSystem& files, const std::string& source,
                                            const std::string& destination, forms::ProgressBar& bar,
                                            std::uint32_t flags = copyflag::none);

/// The same, without any bar.
[[nodiscard]] SystemError CopyPlain(FileSystem& files, const std::string& source, const std::string& destination,
                                    std::uint32_t flags = copyflag::none);

}  // namespace marlok
