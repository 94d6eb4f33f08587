#pragma once

#include <string>
#include <string_view>

/// Names of the files that the program keeps while it writes. None of them outlives a run that ends by itself; none is
/// ever a saved file, and no file to be saved may bear such a name.
namespace marlok::workingfile {

/// What all of them begin with.
inline constexpr std::string_view prefix = "~Marlok Backup.";

/// Journal of the copies in progress, in the backup location: as it was called while it bore no computer's name, and
/// that of a computer.
inline constexpr std::string_view journal = "~Marlok Backup.run";
[[nodiscard]] std::string JournalOf(std::string_view computer);

/// The new copy of a file that has one already, beside that one: an original being put back; and a saved copy being
/// renewed by a computer.
inline constexpr std::string_view part = "~Marlok Backup.part";
[[nodiscard]] std::string PartOf(std::string_view computer);

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
