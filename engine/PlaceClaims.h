#pragma once

#include <map>
#include <string>
#include <vector>

#include "engine/ChosenFile.h"
#include "platform/FileSystem.h"

namespace marlok {

/// Whose the saved copies of a location are, where several originals may come for the same. Whether two names are one
/// is the volume's answer.
class PlaceClaims {
 public:
    /// `files` outlives this object.
    explicit PlaceClaims(FileSystem& files) : files_(files) {}

    /// Why a saved file that bears the name of `source`, as the volume takes names, is not its saved copy; "" when it
    /// is, or when nothing says that it is not.
    [[nodiscard]] std::string WhyTaken(const FolderWork& work, const std::string& source,
                                       const SavedFolder::Found& saved);

    /// The same for a place that an original before this one has tried to take, whether or not it succeeded.
    [[nodiscard]] std::string WhyClaimed(const FolderWork& work, const std::string& source, const std::string& target);

    /// Remembers whose place this is, where others may come for it. Called again when the file is there, it knows the
    /// place by the file too.
    void Claim(const FolderWork& work, const std::string& source, const std::string& target);

 private:
    [[nodiscard]] std::vector<std::string> KeysOf(const FolderWork& work, const std::string& target);

    FileSystem& files_;
    std::map<std::string, std::string> claims_;  ///< see KeysOf
};

/// Why a file is not saved whose place another original has.
[[nodiscard]] std::string SamePlace(const std::string& other);

}  // namespace marlok
