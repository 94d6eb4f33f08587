#pragma once

#include <string>
#include <vector>

#include "fileops/Presence.h"
#include "paths/Location.h"
#include "platform/FileSystem.h"
#include "settings/BackupSettings.h"

namespace marlok {

/// The locations that use one list of original paths: all that have one name, on whatever drive. A line of the list has
/// served its time when none of them holds the saved file any more.
class ListUsers {
 public:
    /// `location`, and those of `settings` that are called like it. What is looked up is kept: make the object when the
    /// deletions are done. `files` outlives it.
    ListUsers(FileSystem& files, BackupSettings settings, const Location& location);

    /// True when the saved file of `original` is in none of the locations, for certain: each of them can be reached,
    /// and the file was looked for and not found.
    [[nodiscard]] bool HaveLost(const std::string& original);

 private:
    PresenceLookup lookup_;
    std::vector<Location> locations_;
    bool allReachable_ = true;
};

}  // namespace marlok
