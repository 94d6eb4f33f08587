#include "engine/SharedPlaces.h"

#include <algorithm>
#include <utility>

#include "paths/Path.h"
#include "paths/Roots.h"
#include "text/Text.h"

namespace marlok {

namespace {

/// A source and where it is saved.
struct Saved {
    std::string source;
    std::string place;
};

std::vector<Saved> SavedIn(const Location& location, const std::vector<std::string>& sources) {
    std::vector<Saved> saved;
    for (const std::string& source : sources) {
        if (HasDriveRoot(source) || IsNetworkPath(source)) {
            saved.push_back({source, WithoutBackslash(location.SavedPathOf(source))});
        }
    }
    return saved;
}

/// True when the place of `inner`, which lies at or below that of `outer`, is that of another file or folder of `outer`
/// than `inner` is.
bool HoldsAnother(const Saved& outer, const Saved& inner) {
    const std::string below = AddBackslash(inner.place).substr(AddBackslash(outer.place).size());
    return !text::EqualIgnoringCase(WithoutBackslash(AddBackslash(outer.source) + below),
                                    WithoutBackslash(inner.source));
}

bool Meet(const Saved& one, const Saved& other) {
    return (IsAtOrBelow(one.place, other.place) && HoldsAnother(other, one)) ||
           (IsAtOrBelow(other.place, one.place) && HoldsAnother(one, other));
}

void AddMeeting(std::vector<SharedPlace>& shared, const Saved& one, const Saved& other) {
    const std::string& place = one.place.size() > other.place.size() ? one.place : other.place;
    const bool named = std::ranges::any_of(shared, [&](const SharedPlace& known) {
        return known.place == place && ((known.source == one.source && known.other == other.source) ||
                                        (known.source == other.source && known.other == one.source));
    });
    if (!named) {
        shared.push_back({one.source, other.source, place});
    }
}

}  // namespace

std::vector<SharedPlace> FindSharedPlaces(BackupSettings settings, const Location& location,
                                          const std::vector<std::string>& sources) {
    std::vector<Saved> added;
    std::vector<Saved> all;
    for (const Location& each : settings.Locations()) {
        // Locations of one name on several drives have one list of sources.
        if (text::EqualIgnoringCase(each.Section(), location.Section())) {
            std::ranges::copy(SavedIn(each, sources), std::back_inserter(added));
        }
        std::ranges::copy(SavedIn(each, settings.Sources(each)), std::back_inserter(all));
    }
    std::vector<SharedPlace> shared;
    for (const Saved& one : added) {
        for (const Saved& other : all) {
            if (Meet(one, other)) {
                AddMeeting(shared, one, other);
            }
        }
    }
    return shared;
}

}  // namespace marlok
