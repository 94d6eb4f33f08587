#pragma once

#include <string_view>

/// Names of the files that the program keeps while it writes. None of them outlives a run that ends by itself; none is
/// ever a saved file, and no file to be saved may bear such a name.
namespace marlok::workingfile {

/// What all of them begin with.
inline constexpr std::string_view prefix = "~Marlok Backup.";

/// Journal of the copies in progress, in the backup location.
inline constexpr std::string_view journal = "~Marlok Backup.run";

/// The new copy of a file that has a saved copy already, beside that copy.
inline constexpr std::string_view part = "~Marlok Backup.part";

/// A text file of ours that is being written, beside the file it will replace.
inline constexpr std::string_view newText = "~Marlok Backup.new";

/// An original that is being replaced by a saved copy, beside its successor, until that is in its place. A number
/// follows where a file of that name is there already.
inline constexpr std::string_view old = "~Marlok Backup.old";

/// Journal of the originals that are being replaced, beside the program.
inline constexpr std::string_view put = "~Marlok Backup.put";

/// True for the name (without folder) of a working file, in any letter case.
[[nodiscard]] bool IsWorkingFile(std::string_view name);

}  // namespace marlok::workingfile
