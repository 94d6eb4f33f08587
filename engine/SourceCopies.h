#pragma once

#include <string>
#include <vector>

#include "engine/RunReport.h"
#include "paths/Location.h"
#include "platform/Machine.h"

namespace marlok {

/// What is saved of single sources of a location: deleted when a source is taken off the location's list.
/// `machine` outlives the object.
class SourceCopies {
 public:
    SourceCopies(Machine& machine, const Location& location) : machine_(machine), location_(location) {}

    /// Deletes what was saved for `source`, below the location and nowhere else: neither through links nor through odd
    /// paths. A source called like a file (with a three-letter extension) loses the file saved for it, every other one
    /// the folder with all it holds. What could not be deleted is added to `report`.
    void Delete(const std::string& source, RunReport& report) const;

    /// Takes the lines that contain one of `sources`, letter case ignored, out of the location's list of original
    /// paths, unless none would be left. Returns the lines that stay; what could not be done is added to `report`.
    std::vector<std::string> TakeOffList(const std::vector<std::string>& sources, RunReport& report) const;

 private:
    Machine& machine_;
    Location location_;
};

}  // namespace marlok
