#pragma once

#include <string>
#include <string_view>

#include "paths/ProgramFiles.h"

namespace marlok {

/// A backup location: the folder that files are saved in, and everything that is named after it. Made once, where its
/// path comes in; a "\" at the end of that path makes no difference.
class Location {
 public:
    explicit Location(std::string_view path);

    /// Full path, without a "\" at its end unless it is a drive's root.
    [[nodiscard]] const std::string& Path() const { return path_; }

    /// The path without its drive root. Names the location for its user, its section in the settings, and its list of
    /// original paths; two locations that differ only in their drive share all three. "" for a drive's root.
    [[nodiscard]] const std::string& Name() const { return name_; }

    /// Section of the settings that holds its sources.
    [[nodiscard]] const std::string& Section() const { return name_; }

    /// Its list of original paths, a text file beside the program or in a folder there.
    [[nodiscard]] std::string OriginalList(const ProgramFolder& folder) const;

    /// Full path of what lies in the location under a relative path.
    [[nodiscard]] std::string Below(std::string_view relative) const;

    /// Where a source is saved: in the location, under its path without the drive root. So equal paths on two drives
    /// share one place. A network source keeps its server and share as folders.
    [[nodiscard]] std::string SavedPathOf(std::string_view source) const;

    /// Path of a saved file below the location ("Data\a.doc"), which is that of its original below the drive root.
    /// "" for a path that does not begin with the location's.
    [[nodiscard]] std::string RelativeNameOf(std::string_view saved) const;

    /// Why this cannot be a backup location, as a sentence for the user; "" when it can.
    ///
    /// The list of original paths bears the location's name. Were it one of the program's own files, its lines would be
    /// taken for something else: those of "DeleteFolder.txt" are deleted at the next start. So a name is refused when
    /// its list, or a folder on the way to it, would be a file of the program, under its long name, an 8.3 alias of it,
    /// or any spelling that the file system takes for the same. So is a name that leads out of the program folder.
    [[nodiscard]] std::string WhyRefused() const;

    friend bool operator==(const Location&, const Location&) = default;

 private:
    std::string path_;
    std::string name_;
};

}  // namespace marlok
