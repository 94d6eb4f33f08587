#include "engine/ListUsers.h"

#include <algorithm>

#include "text/Text.h"

namespace marlok {

ListUsers::ListUsers(FileSystem& files, BackupSettings settings, const Location& location)
    : lookup_(files), locations_{location} {
    const std::vector<Location> all = settings.Locations();
    // A setting that cannot be read looks like the end of the list: what reads the same twice was read.
    allReachable_ = all == settings.Locations();
    for (const Location& other : all) {
        if (other != location && text::EqualIgnoringCase(other.Name(), location.Name())) {
            locations_.push_back(other);
        }
    }
    // The folder of a location is missing where another disk has its letter: it may hold the file all the same.
    allReachable_ = allReachable_ && std::ranges::all_of(locations_, [&files](const Location& each) {
                        return WhyUnreachable(files, each.Path()) == error::success;
                    });
}

bool ListUsers::HaveLost(const std::string& original) {
    return allReachable_ && std::ranges::all_of(locations_, [&](const Location& location) {
               return lookup_.Of(location.SavedPathOf(original)) == Presence::gone;
           });
}

}  // namespace marlok
