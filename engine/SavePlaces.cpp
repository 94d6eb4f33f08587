#include "engine/SavePlaces.h"

#include <array>

#include "engine/LocationName.h"
#include "fileops/FolderFunctions.h"
#include "fileops/FolderScan.h"
#include "fileops/WorkingFiles.h"
#include "platform/Text.h"

namespace marlok {

namespace {

constexpr std::array namedFiles{
    programfile::program,   programfile::command,     programfile::deleteFolder,  programfile::runLog,
    programfile::errorLog,  programfile::replacedLog, programfile::restartSource, programfile::restartProgram,
    programfile::animation, programfile::help,
};

bool SameFolder(FileSystem& files, const std::string& a, const std::string& b) {
    FileIdentity first;
    FileIdentity second;
    // Some network and virtual disks number nothing; an index of 0 tells nobody apart.
    return files.Identify(a, first) == error::success && first.index != 0 &&
           files.Identify(b, second) == error::success && first == second;
}

/// True when `folder` is one of the folders on the way up from `path`, told by what the folders are, not how they are
/// called: a substituted drive or a share on this machine hides nothing.
bool IsOnTheWayUp(FileSystem& files, const std::string& path, const std::string& folder) {
    std::string above = WithoutBackslash(path);
    while (!above.empty()) {
        if (SameFolder(files, above, folder)) {
            return true;
        }
        const std::string next = FolderOf(above);
        if (next.size() >= above.size()) {
            break;
        }
        above = next;
    }
    return false;
}

bool IsMissing(FileSystem& files, const std::string& path) {
    DirectoryEntry entry;
    return files.GetEntry(path, entry) != error::success;
}

}  // namespace

std::string ResolvedPath(FileSystem& files, const std::string& path) {
    const std::string plain = WithoutBackslash(path);
    std::string resolved;
    if (files.FinalPath(plain, resolved) == error::success) {
        return WithoutBackslash(resolved);
    }
    const std::string folder = FolderOf(plain);
    if (folder.empty() || folder.size() >= plain.size()) {
        return plain;
    }
    return AddBackslash(ResolvedPath(files, folder)) + plain.substr(AddBackslash(folder).size());
}

bool IsInside(FileSystem& files, const std::string& path, const std::string& folder) {
    const std::string resolved = ResolvedPath(files, path);
    return IsAtOrBelow(path, folder) || IsAtOrBelow(resolved, ResolvedPath(files, folder)) ||
           IsOnTheWayUp(files, resolved, folder) || IsOnTheWayUp(files, path, folder);
}

SavePlaces::SavePlaces(Program& program) : program_(program) {
    FileSystem& files = program.machine.files;
    BackupSettings settings = program.Configuration();
    for (const std::string& location : settings.Locations()) {
        for (const std::string& source : settings.Sources(location)) {
            sources_.push_back({location, source});
        }
        lists_.push_back(OriginalListPath(program, location));
        ownFiles_.insert(text::Fold(ResolvedPath(files, lists_.back())));
    }
    for (const char* name : namedFiles) {
        ownFiles_.insert(text::Fold(ResolvedPath(files, program.BesideProgram(name))));
    }
}

std::string SavePlaces::WhyNotEmptied(const std::string& location) const {
    FileSystem& files = program_.machine.files;
    for (const Source& source : sources_) {
        if (IsInside(files, source.path, location)) {
            return "not emptied before copying: it holds " + source.path + ", which is to be backed up";
        }
        const bool own = text::EqualIgnoringCase(source.location, location);
        if (own && IsMissing(files, source.path)) {
            return "not emptied before copying: " + source.path + " was not found, and these may be its only copies";
        }
    }
    if (IsInside(files, program_.machine.process.ProgramFolder(), location)) {
        return "not emptied before copying: it holds this program";
    }
    if (IsInside(files, program_.machine.system.WindowsFolder(), location)) {
        return "not emptied before copying: it holds Windows";
    }
    for (const std::string& list : lists_) {
        if (IsInside(files, list, location)) {
            return "not emptied before copying: it holds a list of original paths";
        }
    }
    return "";
}

void SavePlaces::EnterLocation(const std::string& location) {
    FileSystem& files = program_.machine.files;
    const std::string programFolder = program_.machine.process.ProgramFolder();
    location_ = WithoutBackslash(location);
    resolvedLocation_ = ResolvedPath(files, location_);
    nearProgram_ = IsInside(files, programFolder, location_) || IsInside(files, location_, programFolder);
}

bool SavePlaces::MaySave(const std::string& target) const {
    const std::string_view name = PathFindFileName(target);
    if (name.front() == '~' && workingfile::IsWorkingFile(name)) {
        return false;
    }
    if (!nearProgram_) {
        return true;
    }
    const std::string below = target.substr(AddBackslash(location_).size());
    return !ownFiles_.contains(text::Fold(target)) &&
           !ownFiles_.contains(text::Fold(AddBackslash(resolvedLocation_) + below));
}

}  // namespace marlok
