#include "engine/ProtectedPlaces.h"

#include <algorithm>

#include "paths/Path.h"
#include "paths/ProgramFiles.h"
#include "paths/Roots.h"

namespace marlok {

namespace {

constexpr const char* unreadSettings = "perhaps what is to be backed up: the list of that could not be read";

}  // namespace

ProtectedPlaces::ProtectedPlaces(Machine& machine, BackupSettings settings) : machine_(machine), where_(machine.files) {
    places_.push_back({machine.process.ProgramFolder(), "this program"});
    places_.push_back({machine.system.WindowsFolder(), "Windows"});
    if (const std::string desktop = machine.shell.DesktopFolder(); !desktop.empty()) {
        places_.push_back({desktop, "your desktop"});
        if (const std::string profile = FolderAbove(desktop); !profile.empty() && !IsRoot(profile)) {
            places_.push_back({profile, "your user profile"});
        }
    }
    AddConfiguration(settings);
}

ProtectedPlaces::ProtectedPlaces(Machine& machine, BackupSettings settings, const Location& location)
    : ProtectedPlaces(machine, settings) {
    std::erase_if(places_, [&](const Place& place) { return !where_.MayBeInside(place.path, location.Path()); });
    for (Place& place : places_) {
        place.isAround = where_.IsInside(location.Path(), place.path);
    }
}

void ProtectedPlaces::AddConfiguration(BackupSettings settings) {
    const ProgramFolder folder(machine_.process.ProgramFolder());
    const std::vector<Location> locations = settings.Locations();
    // A setting that cannot be read looks like the end of its list: what reads the same twice was read.
    settingsRead_ = locations == settings.Locations();
    for (const Location& location : locations) {
        places_.push_back({location.Path(), "the backup location " + location.Path(), true});
        places_.push_back({location.OriginalList(folder), "a list of original paths"});
        const std::vector<std::string> sources = settings.Sources(location);
        settingsRead_ = settingsRead_ && sources == settings.Sources(location);
        for (const std::string& source : sources) {
            places_.push_back({source, source + ", which is to be backed up"});
        }
    }
}

std::string ProtectedPlaces::HeldBy(const std::string& folder) {
    if (!settingsRead_) {
        return unreadSettings;
    }
    // From the top: where a whole folder holds nothing, none of the many below it needs a look of its own.
    std::string held;
    for (const std::string& above : FoldersOnTheWay(folder)) {
        if (!IsRoot(above)) {
            const auto [found, added] = known_.try_emplace(above);
            if (added) {
                found->second = LookUp(above);
            }
            held = found->second;
            if (held.empty()) {
                return "";
            }
        }
    }
    return held;
}

std::string ProtectedPlaces::LookUp(const std::string& folder) {
    std::string held;
    for (const Place& place : places_) {
        const Answer inside = where_.Inside(place.path, folder).inside;
        if (inside == Answer::yes) {
            return place.what;
        }
        held = inside == Answer::unknown ? "perhaps " + place.what : held;
    }
    return held;
}

std::string ProtectedPlaces::MetBy(const std::string& path) {
    if (!settingsRead_) {
        return unreadSettings;
    }
    const auto met = std::ranges::find_if(places_, [&](const Place& place) {
        return !place.isLocation && !place.isAround &&
               (where_.MayBeInside(place.path, path) || where_.MayBeInside(path, place.path));
    });
    return met == places_.end() ? "" : met->what;
}

bool ProtectedPlaces::Any() const {
    return !settingsRead_ || !std::ranges::all_of(places_, &Place::isLocation);
}

}  // namespace marlok
