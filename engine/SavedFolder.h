#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/FileSystem.h"

namespace marlok {

/// The entries of one folder of a backup location, read once, and looked up by name the way the file system does it:
/// without regard to letter case, by 8.3 aliases too. One listing costs as much as a handful of look-ups.
class SavedFolder {
 public:
    /// An empty folder.
    SavedFolder() = default;

    /// Reads `folder`. On failure the object is empty.
    [[nodiscard]] SystemError Read(FileSystem& files, const std::string& folder);

    /// The entry that a look-up of `name` finds; null when there is none.
    [[nodiscard]] const DirectoryEntry* Find(const std::string& name) const;

 private:
    [[nodiscard]] const DirectoryEntry* FindAlias(const std::string& folded) const;

    std::vector<DirectoryEntry> entries_;
    std::unordered_map<std::string, std::size_t> byFoldedName_;
    std::unordered_map<std::string, std::size_t>
        sameButForCase_;  ///< exact names of further entries of one folded name
};

}  // namespace marlok
