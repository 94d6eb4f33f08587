#pragma once

#include <map>
#include <string>
#include <vector>

#include "fileops/Whereabouts.h"
#include "paths/Location.h"
#include "platform/Machine.h"
#include "settings/BackupSettings.h"

namespace marlok {

/// The places that nobody means when saved files, or the folders that they have left empty, are deleted: what is to be
/// backed up, backup locations, the program, its lists of original paths, Windows, and the user's profile.
///
/// Links and other names of a folder are seen through, on the side of the places. A path that is asked about is to lead
/// through no link. What cannot be found out counts against deleting; answers are the end of a sentence about the path
/// ("this program"), "" when nothing stands against deleting.
class ProtectedPlaces {
 public:
    /// Reads the configuration once. `machine` outlives this object.
    ProtectedPlaces(Machine& machine, BackupSettings settings);

    /// Those in `location` alone, which is enough for what lies in it.
    ProtectedPlaces(Machine& machine, BackupSettings settings, const Location& location);

    /// False when the configuration could not be read: then every answer stands against deleting.
    [[nodiscard]] bool Known() const { return settingsRead_; }

    /// What `folder` is or holds of these.
    [[nodiscard]] std::string HeldBy(const std::string& folder);

    /// What `path`, of a file or folder, is, holds, or lies in, backup locations left out. For a single location's
    /// places: a place that the whole location lies in is left out too.
    [[nodiscard]] std::string MetBy(const std::string& path);

    /// False when they are backup locations alone, for certain: a location's folders are then all made by backups.
    [[nodiscard]] bool Any() const;

 private:
    struct Place {
        std::string path;
        std::string what;
        bool isLocation = false;
        bool isAround = false;  ///< the location whose places these are lies in it
    };

    void AddConfiguration(BackupSettings settings);
    [[nodiscard]] std::string LookUp(const std::string& folder);

    Machine& machine_;
    Whereabouts where_;
    std::vector<Place> places_;
    bool settingsRead_ = true;
    std::map<std::string, std::string> known_;  ///< folders that were asked for, and the answers
};

}  // namespace marlok
