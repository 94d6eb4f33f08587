#include "engine/Restore.h"

#include "engine/OriginalPathList.h"
#include "fileops/Deleting.h"
#include "fileops/Errors.h"
#include "fileops/FileOperations.h"
#include "fileops/FolderFunctions.h"
#include "fileops/Replacing.h"
#include "paths/Names.h"
#include "paths/Path.h"
#include "paths/Roots.h"
#include "paths/WorkingFiles.h"
#include "settings/BackupSettings.h"

namespace marlok {

namespace {

bool IsPlainOriginal(const std::string& original) {
    const PathRoot root = RootOf(original);
    const bool hasRoot = root.kind == PathRoot::Kind::drive || root.kind == PathRoot::Kind::network;
    return hasRoot && IsPlainRelativePath(original.substr(root.kind == PathRoot::Kind::drive ? root.length : 0)) &&
           !original.ends_with('\\');
}

/// Nobody can tell any more which of them the saved copy was made of.
std::string SeveralOriginals(const FoundOriginal& found) {
    std::string sentence = "not replaced: the list of original paths names several originals for it";
    for (const std::string& path : found.paths) {
        sentence += (&path == &found.paths.front() ? ": " : ", ") + path;
    }
    return sentence;
}

bool Exists(FileSystem& files, const std::string& path) {
    DirectoryEntry entry;
    return files.GetEntry(path, entry) == error::success;
}

bool IsFile(FileSystem& files, const std::string& path) {
    DirectoryEntry entry;
    return files.GetEntry(path, entry) == error::success && !entry.IsFolder();
}

/// Makes the folder of an original.
bool MakeFolderFor(Machine& machine, const std::string& original) {
    if (HasThreeLetterExtension(original)) {
        EnsureFolderFor(machine.files, machine.process, original);
        return IsDirectoryPath(machine.files, FolderOf(original));
    }
    // A file without such an extension would itself be made a folder.
    return CreateNestedFolders(machine.files, machine.process, FolderOf(original));
}

std::int16_t Counted(std::int16_t count) {
    return static_cast<std::int16_t>(CheckedCounter(count + 1));
}

}  // namespace

std::string RestoreFile(Machine& machine, const std::string& saved, const std::string& original) {
    if (!IsPlainOriginal(original)) {
        return "the list of original paths holds no full path for it";
    }
    FileSystem& files = machine.files;
    if (IsDirectoryPath(files, original)) {
        return "a folder of that name is in its place";
    }
    if (!MakeFolderFor(machine, original)) {
        return "its folder is missing and cannot be made";
    }
    const std::string part = Join(FolderOf(original), workingfile::part);
    // One that a killed run has left may be read-only.
    SystemError code = Exists(files, part) ? ForceDelete(files, part) : error::success;
    if (code == error::success) {
        code = CopyThisFile(files, saved, part);
    }
    if (code == error::success) {
        code = ForceReplace(files, part, original);
    }
    if (code == error::success) {
        return "";
    }
    if (Exists(files, part)) {
        // Harmless: the next copy beside it replaces it, and none takes it for a file of the user's.
        static_cast<void>(ForceDelete(files, part));
    }
    return Describe(machine.system, code);
}

SystemError RestoreFiles(Machine& machine, const Location& location, const std::vector<std::string>& saved,
                         RestoreSink& sink, RestoreResult& result) {
    OriginalPathList list(machine, location);
    if (list.Load() == OriginalPathList::State::unreadable) {
        return list.Code();
    }
    std::vector<std::string> names;
    names.reserve(saved.size());
    for (const std::string& path : saved) {
        names.push_back(location.RelativeNameOf(path));
    }
    const std::vector<FoundOriginal> originals = list.FindAll(names);
    for (std::size_t k = 0; k < saved.size(); ++k) {
        result.lastNotLocated = false;
        if (originals[k].kind == FoundOriginal::Kind::several) {
            result.report.Add(saved[k], SeveralOriginals(originals[k]));
            ++result.report.failed;
        } else if (!originals[k]) {
            result.notListed = Counted(result.notListed);
            sink.NotListed(saved[k]);
        } else if (!IsFile(machine.files, saved[k])) {
            result.notLocated = Counted(result.notLocated);
            result.lastNotLocated = true;
            sink.NotLocated(saved[k]);
        } else {
            sink.ReplaceBegins(*originals[k]);
            result.report.written.push_back(*originals[k]);
            const std::string failure = RestoreFile(machine, saved[k], *originals[k]);
            if (!failure.empty()) {
                result.report.Add(saved[k] + " -> " + *originals[k], failure);
                ++result.report.failed;
            }
            sink.Breathe();
        }
    }
    result.nothingToLog = saved.size() == 1 && result.notListed + result.notLocated > 0;
    return error::success;
}

}  // namespace marlok
