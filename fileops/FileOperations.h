#pragma once

#include <string>

#include "platform/FileSystem.h"

/// Copying of files, by the kernel. Each of these overwrites an existing destination unless `copyflag::failIfExists` is
/// among the extra `copyflag::` bits, keeps attributes and last-write time, and returns `error::success` or why it
/// failed. What a failed copy leaves at the destination is not promised.
namespace marlok {

/// Copies one file, a saved one or an original.
[[nodiscard]] SystemError CopyThisFile(FileSystem& files, const std::string& source, const std::string& destination);

/// Copies one file in a way that a broken connection does not end; `progress` is told of the bytes copied so far.
[[nodiscard]] SystemError CopyWithProgress(FileSystem& files, const std::string& source, const std::string& destination,
                                           std::uint32_t flags, const CopyProgressRoutine& progress);

/// Copies one file and tells nothing meanwhile.
[[nodiscard]] SystemError CopyPlain(FileSystem& files, const std::string& source, const std::string& destination,
                                    std::uint32_t flags);

}  // namespace marlok
