#include "engine/SavePlaces.h"

#include "fileops/Whereabouts.h"
#include "paths/Path.h"
#include "paths/WorkingFiles.h"
#include "text/Text.h"

namespace marlok {

namespace {

bool Exists(FileSystem& files, const std::string& path) {
    DirectoryEntry entry;
    return files.GetEntry(path, entry) == error::success;
}

std::string NotEmptied(const std::string& why) {
    return "not emptied before copying: " + why;
}

}  // namespace

SavePlaces::SavePlaces(Machine& machine, BackupSettings settings) : machine_(machine), sources_(ReadSources(settings)) {
    // A setting that cannot be read looks like the end of its list. A list that reads the same twice was read.
    settingsRead_ = sources_ == ReadSources(settings);
    const ProgramFolder folder(machine.process.ProgramFolder());
    for (const Location& location : settings.Locations()) {
        lists_.push_back(location.OriginalList(folder));
        ownFiles_.insert(text::Fold(ResolvedPath(machine.files, lists_.back())));
    }
    for (const char* name : programfile::all) {
        ownFiles_.insert(text::Fold(ResolvedPath(machine.files, folder.PathOf(name))));
    }
}

std::vector<SavePlaces::Source> SavePlaces::ReadSources(BackupSettings settings) {
    std::vector<Source> sources;
    for (const Location& location : settings.Locations()) {
        for (const std::string& source : settings.Sources(location)) {
            sources.push_back({location, source});
        }
    }
    return sources;
}

std::string SavePlaces::WhyNotEmptied(const Location& location) const {
    FileSystem& files = machine_.files;
    bool any = false;
    for (const Source& source : sources_) {
        if (MayBeInside(files, source.path, location.Path())) {
            return NotEmptied("it holds " + source.path + ", which is to be backed up");
        }
        if (text::EqualIgnoringCase(source.location.Name(), location.Name())) {
            any = true;
            if (!Exists(files, source.path)) {
                return NotEmptied(source.path + " was not found, and these may be its only copies");
            }
        }
    }
    if (!any || !settingsRead_) {
        return NotEmptied("the list of what is to be backed up could not be read");
    }
    if (MayBeInside(files, machine_.process.ProgramFolder(), location.Path())) {
        return NotEmptied("it holds this program");
    }
    if (MayBeInside(files, machine_.system.WindowsFolder(), location.Path())) {
        return NotEmptied("it holds Windows");
    }
    for (const std::string& list : lists_) {
        if (MayBeInside(files, list, location.Path())) {
            return NotEmptied("it holds a list of original paths");
        }
    }
    return "";
}

void SavePlaces::EnterLocation(const Location& location) {
    FileSystem& files = machine_.files;
    const std::string programFolder = machine_.process.ProgramFolder();
    locationLength_ = location.Below("").size();
    resolvedLocation_ = AddBackslash(ResolvedPath(files, location.Path()));
    nearProgram_ = IsInside(files, programFolder, location.Path()) || IsInside(files, location.Path(), programFolder);
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
