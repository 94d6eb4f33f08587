#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "fileops/Whereabouts.h"
#include "paths/Location.h"
#include "platform/Machine.h"
#include "settings/BackupSettings.h"

namespace marlok {

/// What a run must not touch in a backup location: sources, other locations, the program, Windows, the program's own
/// files. All of them are compared by what they are, not by how they are called.
class SavePlaces {
 public:
    /// Reads the configuration once: all locations and all their sources. `machine` outlives this object.
    SavePlaces(Machine& machine, BackupSettings settings);

    /// Why nothing may be deleted in the location before everything is copied into it; "" when it may. Never in a
    /// location at or above a source of any location, the program folder, the Windows folder, or a list of original
    /// paths; nor in one that is another location too, under another name. What cannot be found out counts against
    /// deleting.
    [[nodiscard]] std::string WhyNotEmptied(const Location& location);

    /// Other locations that lie in `folder`, whatever they are called there: their paths below it. Those that cannot be
    /// told are left out; WhyNotEmptied has them.
    [[nodiscard]] std::vector<std::string> LocationsBelow(const std::string& folder);

    /// All locations, with links resolved.
    [[nodiscard]] std::vector<std::string> ResolvedLocations();

    /// Why a source is not saved into the location, as a sentence for the user; "" when it is: it lies in the location
    /// itself, or in one that saves, over however many others, what this one holds, so that each run would nest their
    /// copies deeper.
    [[nodiscard]] std::string WhyNotSaved(const Location& location, const std::string& source);

    /// A file of another location that may be saved in this one's tree, or whose location this one lies in.
    struct Rival {
        std::string folder;    ///< where the other location lies below this one; "" when this one lies in it
        std::string above;     ///< where this location lies below the other one; "" when that lies in this one
        std::string relative;  ///< the source of the other location without its drive root
        std::string source;
        bool earlier = false;  ///< the other location comes first in the settings
    };

    /// The sources of other locations whose saved copies lie in one tree with this location's.
    [[nodiscard]] std::vector<Rival> RivalsOf(const Location& location);

    /// Tells where the copies that follow are written.
    void EnterLocation(const Location& location);

    /// True when a file may be saved as `target`: it does not bear the name of a working file, and it is neither a file
    /// of the program nor a list of original paths. `target` lies in the location that was entered.
    [[nodiscard]] bool MaySave(const std::string& target) const;

    [[nodiscard]] Whereabouts& Where() { return where_; }

 private:
    struct Configured {
        Location location;
        std::vector<std::string> sources;

        friend bool operator==(const Configured&, const Configured&) = default;
    };

    [[nodiscard]] static std::vector<Configured> Read(BackupSettings settings);
    [[nodiscard]] bool Saves(std::size_t saver, std::size_t saved);
    [[nodiscard]] bool Feeds(std::size_t from, const Location& to);

    Machine& machine_;
    Whereabouts where_;
    std::vector<Configured> configured_;
    bool settingsRead_ = false;
    std::vector<std::string> lists_;
    std::unordered_set<std::string> ownFiles_;  ///< folded, resolved
    std::size_t locationLength_ = 0;            ///< bytes that all targets begin with
    std::string resolvedLocation_;              ///< with "\" at its end
    bool nearProgram_ = false;
};

}  // namespace marlok
