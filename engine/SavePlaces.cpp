#include "engine/SavePlaces.h"

#include <array>

#include "engine/LocationName.h"
#include "fileops/FolderFunctions.h"
#include "fileops/FolderScan.h"
#include "fileops/WorkingFiles.h"
#include "text/Text.h"

namespace marlok {

namespace {

constexpr std::array namedFiles{
    programfile::program,   programfile::command,     programfile::deleteFolder,  programfile::runLog,
    programfile::errorLog,  programfile::replacedLog, programfile::restartSource, programfile::restartProgram,
    programfile::animation, programfile::help,
};

/// An answer that matters when it is yes, and when it cannot be had.
enum class Answer { no, yes, unknown };

bool IsAbsent(SystemError code) {
    return code == error::fileNotFound || code == error::pathNotFound || code == error::notReady ||
           code == error::badNetworkPath;
}

/// Some drives made by software do not know the question, and have no links either.
bool IsNotProvided(SystemError code) {
    return code == error::invalidFunction || code == error::notSupported;
}

Answer SameFolder(FileSystem& files, const std::string& a, const std::string& b) {
    FileIdentity first;
    FileIdentity second;
    for (const SystemError code : {files.Identify(a, first), files.Identify(b, second)}) {
        if (code != error::success) {
            return IsAbsent(code) || IsNotProvided(code) ? Answer::no : Answer::unknown;
        }
    }
    // Some network and virtual disks number nothing; an index of 0 tells nobody apart.
    return first == second && first.index != 0 ? Answer::yes : Answer::no;
}

/// The folder above; "" above a drive's root or a network share.
std::string Above(const std::string& path) {
    const std::string above = FolderOf(path);
    const bool atShare = IsNetworkPath(path) && path.find('\\', path.find('\\', 2) + 1) == std::string::npos;
    return above.size() < path.size() && !atShare ? above : "";
}

/// Whether `folder` is one of the folders on the way up from `path`, told by what the folders are, not how they are
/// called: a substituted drive or a share on this machine hides nothing.
Answer IsOnTheWayUp(FileSystem& files, const std::string& path, const std::string& folder) {
    Answer answer = Answer::no;
    for (std::string above = WithoutBackslash(path); !above.empty(); above = Above(above)) {
        const Answer same = SameFolder(files, above, folder);
        if (same == Answer::yes) {
            return same;
        }
        answer = same == Answer::unknown ? same : answer;
    }
    return answer;
}

/// Resolves as far as the path exists. False when the system would not tell.
bool TryResolve(FileSystem& files, const std::string& path, std::string& resolved) {
    const std::string plain = WithoutBackslash(path);
    const SystemError code = files.FinalPath(plain, resolved);
    if (code == error::success) {
        resolved = WithoutBackslash(resolved);
        return true;
    }
    const std::string above = Above(plain);
    if (above.empty() || !IsAbsent(code)) {
        resolved = plain;
        return IsAbsent(code) || IsNotProvided(code);
    }
    const bool told = TryResolve(files, above, resolved);
    resolved = AddBackslash(resolved) + plain.substr(AddBackslash(above).size());
    return told;
}

Answer WhetherInside(FileSystem& files, const std::string& path, const std::string& folder) {
    std::string resolvedPath;
    std::string resolvedFolder;
    const bool told = TryResolve(files, path, resolvedPath) && TryResolve(files, folder, resolvedFolder);
    if (IsAtOrBelow(path, folder) || (told && IsAtOrBelow(resolvedPath, resolvedFolder))) {
        return Answer::yes;
    }
    const Answer byText = IsOnTheWayUp(files, path, folder);
    const Answer byTarget = told ? IsOnTheWayUp(files, resolvedPath, folder) : Answer::unknown;
    if (byText == Answer::yes || byTarget == Answer::yes) {
        return Answer::yes;
    }
    return byText == Answer::unknown || byTarget == Answer::unknown ? Answer::unknown : Answer::no;
}

/// Whether it cannot be ruled out that `path` lies in `folder`.
bool MayBeInside(FileSystem& files, const std::string& path, const std::string& folder) {
    return WhetherInside(files, path, folder) != Answer::no;
}

bool IsMissing(FileSystem& files, const std::string& path) {
    DirectoryEntry entry;
    return files.GetEntry(path, entry) != error::success;
}

std::string NotEmptied(const std::string& why) {
    return "not emptied before copying: " + why;
}

}  // namespace

std::string ResolvedPath(FileSystem& files, const std::string& path) {
    std::string resolved;
    // What cannot be resolved stays as it is written: the best that is known.
    static_cast<void>(TryResolve(files, path, resolved));
    return resolved;
}

bool IsInside(FileSystem& files, const std::string& path, const std::string& folder) {
    return WhetherInside(files, path, folder) == Answer::yes;
}

bool IsSurelyInside(FileSystem& files, const std::string& path, const std::string& folder) {
    std::string resolvedPath;
    std::string resolvedFolder;
    return TryResolve(files, path, resolvedPath) && TryResolve(files, folder, resolvedFolder) &&
           IsAtOrBelow(resolvedPath, resolvedFolder);
}

SavePlaces::SavePlaces(Program& program) : program_(program) {
    FileSystem& files = program.machine.files;
    sources_ = ReadSources(program);
    // A setting that cannot be read looks like the end of its list. A list that reads the same twice was read.
    settingsRead_ = sources_ == ReadSources(program);
    for (const std::string& location : program.Configuration().Locations()) {
        lists_.push_back(OriginalListPath(program, location));
        ownFiles_.insert(text::Fold(ResolvedPath(files, lists_.back())));
    }
    for (const char* name : namedFiles) {
        ownFiles_.insert(text::Fold(ResolvedPath(files, program.BesideProgram(name))));
    }
}

std::vector<SavePlaces::Source> SavePlaces::ReadSources(Program& program) {
    BackupSettings settings = program.Configuration();
    std::vector<Source> sources;
    for (const std::string& location : settings.Locations()) {
        for (const std::string& source : settings.Sources(location)) {
            sources.push_back({location, source});
        }
    }
    return sources;
}

std::string SavePlaces::WhyNotEmptied(const std::string& location) const {
    FileSystem& files = program_.machine.files;
    bool any = false;
    for (const Source& source : sources_) {
        if (MayBeInside(files, source.path, location)) {
            return NotEmptied("it holds " + source.path + ", which is to be backed up");
        }
        if (text::EqualIgnoringCase(PathAfterRoot(source.location), PathAfterRoot(location))) {
            any = true;
            if (IsMissing(files, source.path)) {
                return NotEmptied(source.path + " was not found, and these may be its only copies");
            }
        }
    }
    if (!any || !settingsRead_) {
        return NotEmptied("the list of what is to be backed up could not be read");
    }
    if (MayBeInside(files, program_.machine.process.ProgramFolder(), location)) {
        return NotEmptied("it holds this program");
    }
    if (MayBeInside(files, program_.machine.system.WindowsFolder(), location)) {
        return NotEmptied("it holds Windows");
    }
    for (const std::string& list : lists_) {
        if (MayBeInside(files, list, location)) {
            return NotEmptied("it holds a list of original paths");
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
