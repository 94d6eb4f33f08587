#pragma once

#include <string>
#include <string_view>

#include "platform/FileSystem.h"
#include "platform/SystemInfo.h"

/// Text files that hold one full path a line. They are written as valid UTF-8 without a byte order mark, lines ended by
/// a carriage return and a line feed; other programs may have made something else of them since.
namespace marlok {

/// The text in the bytes of such a file, with every line ended by a carriage return and a line feed (the last one
/// perhaps not at all): UTF-8, UTF-16 with its byte order mark, or lines in the system's code page; lines that end in
/// either character alone. `error::invalidData` for what is no text: half a UTF-16 unit at the end, zero characters,
/// such as a power failure may leave.
[[nodiscard]] SystemError DecodePathLines(SystemInfo& system, std::string bytes, std::string& text);

/// Reads and decodes a whole file. On failure `text` is empty.
[[nodiscard]] SystemError ReadPathLines(FileSystem& files, SystemInfo& system, const std::string& path,
                                        std::string& text);

/// The bytes that such a text is written as. DecodePathLines gives the text back.
[[nodiscard]] std::string EncodePathLines(std::string_view text);

}  // namespace marlok
