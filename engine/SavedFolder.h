#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/FileSystem.h"

namespace marlok {

/// The entries of one folder of a backup location, read once, and looked up by name the way the file system does it.
/// One listing costs as much as a handful of look-ups. Where the listing alone does not settle whether two names are
/// the same - letter case, 8.3 aliases - the volume is asked: it has a table of its own.
class SavedFolder {
 public:
    /// An empty folder.
    SavedFolder() = default;

    /// Reads `folder`. On failure the object is empty.
    [[nodiscard]] SystemError Read(FileSystem& files, const std::string& folder);

    [[nodiscard]] bool IsEmpty() const { return entries_.empty(); }
    [[nodiscard]] const std::vector<DirectoryEntry>& Entries() const { return entries_; }

    /// What a look-up of a name finds.
    struct Found {
        SystemError code = error::fileNotFound;  ///< `error::success`; `error::fileNotFound`; or why it is not known
        DirectoryEntry entry;                    ///< as the folder has it, its own name included
    };

    /// Looks `name` up.
    [[nodiscard]] Found Find(FileSystem& files, const std::string& name) const;

 private:
    [[nodiscard]] bool MayHold(const std::string& name) const;

    std::string folder_;
    std::vector<DirectoryEntry> entries_;
    std::unordered_map<std::string, std::size_t> byName_;
    std::unordered_map<std::string, std::size_t> byPlainFold_;  ///< by names with their plain letters folded
    bool anyAlias_ = false;
};

/// Looks a path up on its volume: the entry as its folder has it. `error::fileNotFound` or `error::pathNotFound` when
/// nothing is there.
[[nodiscard]] SavedFolder::Found FindOnVolume(FileSystem& files, const std::string& path);

}  // namespace marlok
