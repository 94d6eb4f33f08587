#pragma once

#include <string>
#include <string_view>

#include "platform/FileSystem.h"
#include "platform/SystemInfo.h"

/// Text files, read. Those of the program are UTF-8 without a byte order mark.
namespace marlok {

/// `bytes` of a text file as UTF-8. A line that is not valid UTF-8 is taken as the system's code page: lines of an
/// older file and lines added since may stand in one file. A byte order mark is dropped.
[[nodiscard]] std::string DecodeText(SystemInfo& system, std::string bytes);

/// The whole text of a file. On failure `text` is empty.
[[nodiscard]] SystemError ReadText(FileSystem& files, SystemInfo& system, const std::string& path, std::string& text);

/// The whole text of a file, line breaks kept; "" for a missing or an empty one.
/// @throws RuntimeError when the file exists and cannot be read.
[[nodiscard]] std::string ReadTextFile(FileSystem& files, SystemInfo& system, const std::string& path);

/// True for the codes that say that there is no such file: neither it nor, perhaps, its folder.
[[nodiscard]] bool IsMissing(SystemError code);

}  // namespace marlok
