#pragma once

#include <string>
#include <string_view>

namespace marlok {

/// The address by which a browser opens a file: "C:\My Files\a.html" -> "file:///C:/My%20Files/a.html",
/// "\\server\share\a.html" -> "file://server/share/a.html". `path` is a full path; what has a meaning of its own in an
/// address ("#", "%", "?") and all that is not ASCII is escaped. Never fails.
std::string FileAddress(std::string_view path);

}  // namespace marlok
