#pragma once

#include <string>
#include <vector>

#include "engine/ProtectedPlaces.h"
#include "engine/RunReport.h"
#include "fileops/Whereabouts.h"
#include "paths/Location.h"
#include "platform/Machine.h"
#include "settings/BackupSettings.h"

namespace marlok {

/// What is saved of single sources of a location: deleted when they are taken off the location's list.
/// `machine` outlives the object.
class SourceCopies {
 public:
    /// `remaining` are the sources that stay on the location's list; all others are read from `settings`, which still
    /// hold the sources that are taken off.
    SourceCopies(Machine& machine, BackupSettings settings, const Location& location,
                 const std::vector<std::string>& remaining);

    /// False when the location cannot be reached, or what else is saved cannot be found out, which is added to
    /// `report`: then nothing is to be changed.
    [[nodiscard]] bool MayDelete(RunReport& report) const;

    /// What became of the copies of a source. What stays is in the report.
    enum class Outcome {
        deleted,      ///< as far as possible
        kept,         ///< it is no source that has a place of its own there
        unreachable,  ///< the location has gone away meanwhile: nothing more is to be changed
    };

    /// Deletes what was saved for `source`, below the location and nowhere else: neither through links nor through odd
    /// paths. A source called like a file (with a three-letter extension) loses the file saved for it, every other one
    /// the folder with all it holds. Where another source is saved stays, and so does another location that lies there,
    /// an original, the program and Windows.
    [[nodiscard]] Outcome Delete(const std::string& source, RunReport& report);

    /// Takes the lines of `sources`, and of what lies below them, out of the location's list of original paths, letter
    /// case ignored, unless none would be left. The line of a file that is still there stays, in this location or in
    /// another of its name. Returns the lines that stay; what could not be done is added to `report`.
    std::vector<std::string> TakeOffList(const std::vector<std::string>& sources, RunReport& report) const;

 private:
    /// Where something else is saved.
    struct Other {
        std::string place;
        std::string what;  ///< that is saved there
        bool isLocation = false;
    };

    void FindOthers(BackupSettings settings, const std::vector<std::string>& remaining);
    [[nodiscard]] SystemError DeleteSaved(const std::string& saved, bool calledLikeFile, RunReport& report);
    [[nodiscard]] std::string WhyKept(const std::string& saved, std::vector<std::string>& keptInside);
    void DeleteAround(const std::string& folder, const std::vector<std::string>& kept, RunReport& report) const;
    [[nodiscard]] bool Reachable(RunReport& report) const;

    Machine& machine_;
    BackupSettings settings_;
    Location location_;
    ProtectedPlaces places_;
    Whereabouts where_;
    std::vector<Other> others_;
    bool settingsRead_ = true;
};

}  // namespace marlok
