#pragma once

#include <string>
#include <string_view>

#include "engine/Program.h"

namespace marlok {

/// The name of a backup location: its path without the drive root. It names the location's section in the settings and
/// its list of original paths.
[[nodiscard]] std::string LocationName(const std::string& location);

/// Full path of the location's list of original paths, a text file beside the program or in a folder there.
[[nodiscard]] std::string OriginalListPath(const Program& program, const std::string& location);

/// Why `location` cannot be a backup location, as a sentence for the user; "" when it can.
///
/// The list of original paths bears the location's name. Were it one of the program's own files, its lines would be
/// taken for something else: those of "DeleteFolder.txt" are deleted at the next start. So a name is refused when its
/// list, or a folder on the way to it, would be a file of the program, under its long name, an 8.3 alias of it, or any
/// spelling that the file system takes for the same. So is a name that leads out of the program folder.
[[nodiscard]] std::string WhyLocationRefused(const std::string& location);

/// True when `path` has only plain components: none is "." or "..", none holds a character that names cannot hold.
/// Empty components are passed over.
[[nodiscard]] bool IsPlainRelativePath(std::string_view path);

}  // namespace marlok
