#pragma once

#include <functional>
#include <string>
#include <vector>

#include "engine/RunReport.h"
#include "fileops/FileSearch.h"
#include "paths/Location.h"
#include "platform/Machine.h"
#include "settings/BackupSettings.h"

namespace marlok {

/// The files that are saved in a location: listing and deleting them. `machine` outlives the object.
class SavedFiles {
 public:
    SavedFiles(Machine& machine, BackupSettings settings, const Location& location)
        : machine_(machine), settings_(settings), location_(location) {}

    /// Finds every saved file and every folder (see SearchFiles); `spec` then holds the counts. A location that cannot
    /// be reached is the first of the `broken` listings: it is not empty, nothing is known of it.
    [[nodiscard]] FoundFolders List(SearchSpec& spec, const SearchSink& sink) const;

    /// What became of files that were to be deleted.
    struct Deletion {
        bool reached = true;             ///< false when the location could not be reached, or no longer
        std::vector<std::string> paths;  ///< full paths of what is gone now
    };

    /// Deletes saved files and adds each that stays to `report`, or the location, when that cannot be reached: then
    /// nothing more is deleted. Paths that do not lie in the location are left alone, and so are folders, and what a
    /// link on the way leads to. `meanwhile` is called after each.
    [[nodiscard]] Deletion Delete(const std::vector<std::string>& paths, RunReport& report,
                                  const std::function<void()>& meanwhile) const;

    /// Takes the lines of deleted files out of the location's list of original paths, those that no location of that
    /// name holds the file of any more. A list that cannot be read keeps its lines, which is reported: taken for empty,
    /// it would be deleted.
    void TakeOffList(const std::vector<std::string>& deleted, RunReport& report) const;

    /// Which folders the deletion of these files has emptied: those on the way up from one of them that hold no file
    /// any more, and those in them. `found` is what List found afterwards. None where the location holds more than
    /// saved copies: there an empty folder may be anybody's.
    [[nodiscard]] std::vector<std::string> EmptiedFolders(const FoundFolders& found,
                                                          const std::vector<std::string>& deleted) const;

 private:
    Machine& machine_;
    BackupSettings settings_;
    Location location_;
};

}  // namespace marlok
