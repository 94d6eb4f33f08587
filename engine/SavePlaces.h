#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "paths/Location.h"
#include "platform/Machine.h"
#include "settings/BackupSettings.h"

namespace marlok {

/// What a run must not touch in a backup location: sources, the program, Windows, the program's own files.
class SavePlaces {
 public:
    /// Reads the configuration once: all locations and all their sources. `machine` outlives this object.
    SavePlaces(Machine& machine, BackupSettings settings);

    /// Why the location must not be emptied before everything is copied into it; "" when it may be. Never: a location
    /// at or above a source of any location, the program folder, the Windows folder, or a list of original paths. And
    /// not while one of the location's own sources is missing: its saved copies may be the only ones. What cannot be
    /// found out counts against emptying.
    [[nodiscard]] std::string WhyNotEmptied(const Location& location) const;

    /// Tells where the copies that follow are written.
    void EnterLocation(const Location& location);

    /// True when a file may be saved as `target`: it does not bear the name of a working file, and it is neither a file
    /// of the program nor a list of original paths. `target` lies in the location that was entered.
    [[nodiscard]] bool MaySave(const std::string& target) const;

 private:
    struct Source {
        Location location;
        std::string path;

        friend bool operator==(const Source&, const Source&) = default;
    };

    [[nodiscard]] static std::vector<Source> ReadSources(BackupSettings settings);

    Machine& machine_;
    std::vector<Source> sources_;
    bool settingsRead_ = false;
    std::vector<std::string> lists_;
    std::unordered_set<std::string> ownFiles_;  ///< folded, resolved
    std::size_t locationLength_ = 0;            ///< bytes that all targets begin with
    std::string resolvedLocation_;              ///< with "\" at its end
    bool nearProgram_ = false;
};

}  // namespace marlok
