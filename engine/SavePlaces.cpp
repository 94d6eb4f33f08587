#include "engine/SavePlaces.h"

#include <algorithm>

#include "paths/Path.h"
#include "paths/WorkingFiles.h"
#include "text/Text.h"

namespace marlok {

namespace {

constexpr const char* insideItself = "not backed up: it lies in the backup location itself";

std::string NotEmptied(const std::string& why) {
    return "nothing was deleted before copying: " + why;
}

}  // namespace

SavePlaces::SavePlaces(Machine& machine, BackupSettings settings)
    : machine_(machine), where_(machine.files), configured_(Read(settings)) {
    // A setting that cannot be read looks like the end of its list. A list that reads the same twice was read.
    settingsRead_ = configured_ == Read(settings);
    const ProgramFolder folder(machine.process.ProgramFolder());
    for (const Configured& one : configured_) {
        lists_.push_back(one.location.OriginalList(folder));
        ownFiles_.insert(text::Fold(where_.Resolved(lists_.back())));
    }
    for (const char* name : programfile::all) {
        ownFiles_.insert(text::Fold(where_.Resolved(folder.PathOf(name))));
    }
}

std::vector<SavePlaces::Configured> SavePlaces::Read(BackupSettings settings) {
    std::vector<Configured> configured;
    for (const Location& location : settings.Locations()) {
        configured.push_back({location, settings.Sources(location)});
    }
    return configured;
}

std::string SavePlaces::WhyNotEmptied(const Location& location) {
    if (!settingsRead_) {
        return NotEmptied("the list of what is to be backed up could not be read");
    }
    for (const Configured& one : configured_) {
        for (const std::string& source : one.sources) {
            if (where_.MayBeInside(source, location.Path())) {
                return NotEmptied("it holds " + source + ", which is to be backed up");
            }
        }
        if (one.location.Path() != location.Path() && where_.Same(one.location.Path(), location.Path()) != Answer::no) {
            return NotEmptied("it is the same folder as " + one.location.Path() + ", or may be");
        }
    }
    if (where_.MayBeInside(machine_.process.ProgramFolder(), location.Path())) {
        return NotEmptied("it holds this program");
    }
    if (where_.MayBeInside(machine_.system.WindowsFolder(), location.Path())) {
        return NotEmptied("it holds Windows");
    }
    for (const std::string& list : lists_) {
        if (where_.MayBeInside(list, location.Path())) {
            return NotEmptied("it holds a list of original paths");
        }
    }
    return "";
}

std::vector<std::string> SavePlaces::LocationsBelow(const std::string& folder) {
    std::vector<std::string> below;
    for (const Configured& one : configured_) {
        const Whereabouts::Relation relation = where_.Inside(one.location.Path(), folder);
        if (relation.inside == Answer::yes && !relation.below.empty()) {
            below.push_back(relation.below);
        }
    }
    return below;
}

std::vector<std::string> SavePlaces::ResolvedLocations() {
    std::vector<std::string> resolved;
    resolved.reserve(configured_.size());
    for (const Configured& one : configured_) {
        resolved.push_back(where_.Resolved(one.location.Path()));
    }
    return resolved;
}

/// Whether one location saves what another one holds.
bool SavePlaces::Saves(std::size_t saver, std::size_t saved) {
    return std::ranges::any_of(configured_[saver].sources, [&](const std::string& source) {
        return where_.IsInside(source, configured_[saved].location.Path());
    });
}

/// Whether what `from` holds comes into the location `to`, directly or over others.
bool SavePlaces::Feeds(std::size_t from, const Location& to) {
    std::vector<std::size_t> reached{from};
    for (std::size_t next = 0; next < reached.size(); ++next) {
        if (where_.Same(configured_[reached[next]].location.Path(), to.Path()) == Answer::yes) {
            return true;
        }
        for (std::size_t saver = 0; saver < configured_.size(); ++saver) {
            if (std::ranges::find(reached, saver) == reached.end() && Saves(saver, reached[next])) {
                reached.push_back(saver);
            }
        }
    }
    return false;
}

std::string SavePlaces::WhyNotSaved(const Location& location, const std::string& source) {
    if (where_.IsInside(source, location.Path())) {
        return insideItself;
    }
    for (const Configured& held : configured_) {
        const Location& other = held.location;
        if (!where_.IsInside(source, other.Path())) {
            continue;
        }
        // Does what is saved here come back to where the source lies?
        for (std::size_t own = 0; own < configured_.size(); ++own) {
            if (where_.Same(configured_[own].location.Path(), location.Path()) == Answer::yes && Feeds(own, other)) {
                return "not backed up: it lies in the backup location " + other.Path() +
                       ", which is saved into this one's copies again";
            }
        }
    }
    return "";
}

std::vector<SavePlaces::Rival> SavePlaces::RivalsOf(const Location& location) {
    std::vector<Rival> rivals;
    bool passed = false;
    for (const Configured& one : configured_) {
        if (one.location == location) {
            passed = true;
            continue;
        }
        const Whereabouts::Relation otherHere = where_.Inside(one.location.Path(), location.Path());
        const Whereabouts::Relation hereOther = where_.Inside(location.Path(), one.location.Path());
        if (otherHere.inside != Answer::yes && hereOther.inside != Answer::yes) {
            continue;
        }
        for (const std::string& source : one.sources) {
            const std::string saved = one.location.RelativeNameOf(one.location.SavedPathOf(source));
            rivals.push_back({otherHere.below, hereOther.below, WithoutBackslash(saved), source, !passed});
        }
    }
    return rivals;
}

void SavePlaces::EnterLocation(const Location& location) {
    const std::string programFolder = machine_.process.ProgramFolder();
    locationLength_ = location.Below("").size();
    resolvedLocation_ = AddBackslash(where_.Resolved(location.Path()));
    nearProgram_ = where_.IsInside(programFolder, location.Path()) || where_.IsInside(location.Path(), programFolder);
}

bool SavePlaces::MaySave(const std::string& target) const {
    const std::string_view name = PathFindFileName(target);
    if (name.front() == '~' && workingfile::IsWorkingFile(name)) {
        return false;
    }
    return !nearProgram_ || (!ownFiles_.contains(text::Fold(target)) &&
                             !ownFiles_.contains(text::Fold(resolvedLocation_ + target.substr(locationLength_))));
}

}  // namespace marlok
