#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "engine/RunReport.h"
#include "fileops/FileSearch.h"
#include "paths/Location.h"
#include "platform/Machine.h"

namespace marlok {

/// The files that are saved in a location: listing and deleting them. `machine` outlives the object.
class SavedFiles {
 public:
    SavedFiles(Machine& machine, const Location& location) : machine_(machine), location_(location) {}

    /// Finds every saved file and every folder (see SearchFiles); `spec` then holds the counts.
    [[nodiscard]] FoundFolders List(SearchSpec& spec, const SearchSink& sink) const;

    /// Deletes saved files and adds each that stays to `report`. Paths that do not lie in the location are left alone
    /// and left out of what is returned: the paths that were to be deleted, deleted or not. `meanwhile` is called after
    /// each.
    [[nodiscard]] std::vector<std::string> Delete(const std::vector<std::string>& paths, RunReport& report,
                                                  const std::function<void()>& meanwhile) const;

    /// Takes the lines of deleted files out of the location's list of original paths. A list that cannot be read keeps
    /// its lines, which is reported: taken for empty, it would be deleted.
    void TakeOffList(const std::vector<std::string>& deleted, RunReport& report) const;

    /// Has these folders deleted when the program starts next.
    void QueueFolders(const std::vector<std::string>& folders, RunReport& report) const;

 private:
    Machine& machine_;
    Location location_;
};

}  // namespace marlok
