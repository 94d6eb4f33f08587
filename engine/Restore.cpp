#include "engine/Restore.h"

#include <optional>
#include <utility>

#include "engine/AbsentDrives.h"
#include "engine/OriginalPathList.h"
#include "fileops/Deleting.h"
#include "fileops/Errors.h"
#include "fileops/FolderFunctions.h"
#include "fileops/Replacing.h"
#include "paths/Path.h"
#include "paths/WorkingFiles.h"
#include "settings/BackupSettings.h"

namespace marlok {

namespace {

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

/// What to do once a drive that was missing is there.
constexpr const char* replaceAgain = "replace the files again";

void ReportStop(const Location& location, std::size_t left, RunReport& report) {
    report.failed += left;
    report.Add(location.Path(), "the replacement was stopped: " + std::to_string(left) +
                                    " of the selected files were not put back; select them again");
}

std::int16_t Counted(std::int16_t count) {
    return static_cast<std::int16_t>(CheckedCounter(count + 1));
}

/// False, counted and said, when a saved file has no original in the list or is not there any more.
bool CanBeReplaced(FileSystem& files, const std::string& saved, const FoundOriginal& original, RestoreSink& sink,
                   RestoreResult& result) {
    result.lastNotLocated = false;
    if (original.kind == FoundOriginal::Kind::several) {
        result.report.Add(saved, SeveralOriginals(original));
        ++result.report.failed;
        return false;
    }
    if (!original) {
        result.notListed = Counted(result.notListed);
        sink.NotListed(saved);
        return false;
    }
    if (!IsFile(files, saved)) {
        result.notLocated = Counted(result.notLocated);
        result.lastNotLocated = true;
        sink.NotLocated(saved);
        return false;
    }
    return true;
}

/// The bits of an attribute word that belong to a file's owner, as they can be set.
std::uint32_t Settable(std::uint32_t attributes) {
    const std::uint32_t own =
        attributes & (attribute::readOnly | attribute::hidden | attribute::system | attribute::archive);
    return own == 0 ? attribute::normal : own;
}

/// In use by another program: a second attempt by other means would fail too, and say so less clearly.
bool IsInUse(SystemError code) {
    return code == error::sharingViolation || code == error::lockViolation || code == error::mappedFile;
}

/// A name in `folder` that no file has, for the old file of a replacement; "" when none can be found.
std::string FreeOldName(FileSystem& files, const std::string& folder) {
    constexpr int mostNames = 1000;
    for (int number = 1; number <= mostNames; ++number) {
        const std::string name = std::string(workingfile::old) + (number == 1 ? "" : std::to_string(number));
        DirectoryEntry entry;
        const SystemError code = files.GetEntry(Join(folder, name), entry);
        if (code != error::success) {
            return code == error::fileNotFound ? name : "";
        }
    }
    return "";
}

/// A file that is to be written to, whatever its attributes.
class Writable {
 public:
    /// Takes the read-only bit away, if the file bears it. A file that keeps it fails later, with a code of its own.
    Writable(FileSystem& files, std::string path) : files_(files), path_(std::move(path)) {
        DirectoryEntry entry;
        if (files_.GetEntry(path_, entry) == error::success && (entry.attributes & attribute::readOnly) != 0) {
            attributes_ = entry.attributes;
            static_cast<void>(files_.SetAttributes(path_, Settable(attributes_ & ~attribute::readOnly)));
        }
    }

    /// Gives it back. Where that fails the file is as good without it.
    void Undo() {
        if (attributes_ != 0) {
            static_cast<void>(files_.SetAttributes(path_, Settable(attributes_)));
        }
    }

 private:
    FileSystem& files_;
    std::string path_;
    std::uint32_t attributes_ = 0;  ///< 0 while nothing was changed
};

}  // namespace

Restorer::Restorer(Machine& machine, RestoreSink& sink) : machine_(machine), sink_(sink), journal_(machine) {
    journal_.ClearKilled();
}

std::string Restorer::Restore(const std::string& saved, const std::string& original) {
    if (!IsPlainOriginal(original)) {
        return "the list of original paths holds no full path for it";
    }
    FileSystem& files = machine_.files;
    if (IsDirectoryPath(files, original)) {
        return "a folder of that name is in its place";
    }
    if (!MakeFolderFor(machine_, original)) {
        const std::string absent = AbsentDrives(files, replaceAgain).Sentence(original, error::pathNotFound);
        return absent.empty() ? "its folder is missing and cannot be made" : absent;
    }
    const std::string part = Join(FolderOf(original), workingfile::part);
    const Replacement replacement{original, FreeOldName(files, FolderOf(original))};
    const bool entered = !replacement.oldName.empty() && journal_.Enter(replacement) == error::success;
    SystemError code = CopyBeside(saved, part);
    if (code == error::success) {
        code = PutInPlace(part, replacement, entered);
    }
    if (code != error::success && Exists(files, part) && ForceDelete(files, part) != error::success && entered) {
        journal_.Leave(replacement);
    }
    return code == error::success ? "" : Failure(code, replacement);
}

std::string Restorer::Failure(SystemError code, const Replacement& replacement) const {
    if (code == error::requestAborted) {
        return "stopped before it was complete";
    }
    std::string reason = Describe(machine_.system, code);
    if (!Exists(machine_.files, replacement.original) && !replacement.oldName.empty() &&
        Exists(machine_.files, Join(FolderOf(replacement.original), replacement.oldName))) {
        return reason + "; the next start of the program gives what was there, now called " + replacement.oldName +
               ", its name back";
    }
    return reason;
}

SystemError Restorer::CopyBeside(const std::string& saved, const std::string& part) {
    FileSystem& files = machine_.files;
    // One that a killed run has left may be read-only.
    if (Exists(files, part)) {
        if (const SystemError code = ForceDelete(files, part); code != error::success) {
            return code;
        }
    }
    return files.Copy(saved, part, copyflag::none, [this](const CopyProgressInfo&) {
        sink_.Breathe();
        return sink_.GoOn() ? CopyAnswer::goOn : CopyAnswer::cancel;
    });
}

/// The exchange keeps what belongs to the original's name: rights, creation time, streams. Where it cannot be had, the
/// copy is renamed over the original.
SystemError Restorer::PutInPlace(const std::string& part, const Replacement& replacement, bool entered) {
    FileSystem& files = machine_.files;
    DirectoryEntry there;
    const bool exists = files.GetEntry(replacement.original, there) == error::success;
    SystemError exchanged = error::notSupported;
    if (entered && exists && !there.IsLink()) {
        exchanged = Exchange(part, replacement);
    }
    if (exchanged == error::success || IsInUse(exchanged)) {
        return exchanged;
    }
    const SystemError code = ForceReplace(files, part, replacement.original);
    if (exchanged == error::replacedMovedAway) {
        if (code == error::success) {
            RemoveOld({replacement.original, replacement.oldName, true});
        } else {
            journal_.Leave(replacement);
        }
    }
    return code;
}

SystemError Restorer::Exchange(const std::string& part, const Replacement& replacement) {
    FileSystem& files = machine_.files;
    DirectoryEntry copy;
    if (const SystemError code = files.GetEntry(part, copy); code != error::success) {
        return code;
    }
    Writable writablePart(files, part);
    Writable writableOriginal(files, replacement.original);
    const std::string old = Join(FolderOf(replacement.original), replacement.oldName);
    const SystemError code = files.Replace(replacement.original, part, old);
    if (code == error::success) {
        RemoveOld({replacement.original, replacement.oldName, true});
        // The attributes are the saved file's, as its content is.
        return files.SetAttributes(replacement.original, Settable(copy.attributes));
    }
    if (code == error::replacedMovedAway && files.Move(old, replacement.original, moveflag::none) != error::success) {
        return code;
    }
    writablePart.Undo();
    writableOriginal.Undo();
    return code == error::replacedMovedAway ? error::replacedKept : code;
}

void Restorer::RemoveOld(const Replacement& replacement) {
    const std::string old = Join(FolderOf(replacement.original), replacement.oldName);
    if (ForceDelete(machine_.files, old) != error::success) {
        static_cast<void>(machine_.files.SetAttributes(old, attribute::hidden));  // until the next start removes it
        journal_.Leave(replacement);
    }
}

SystemError RestoreFiles(Machine& machine, const Location& location, const std::vector<std::string>& saved,
                         RestoreSink& sink, RestoreResult& result) {
    OriginalPathList list(machine, location);
    const OriginalPathList::State state = list.Load();
    if (state == OriginalPathList::State::unreadable) {
        return list.Code();
    }
    if (state == OriginalPathList::State::missing && saved.size() > 1) {
        return error::fileNotFound;  // said once, not of each file
    }
    std::vector<std::string> names;
    names.reserve(saved.size());
    for (const std::string& path : saved) {
        names.push_back(location.RelativeNameOf(path));
    }
    const std::vector<FoundOriginal> originals = list.FindAll(names);
    Restorer restorer(machine, sink);
    for (std::size_t k = 0; k < saved.size(); ++k) {
        if (!sink.GoOn()) {
            ReportStop(location, saved.size() - k, result.report);
            break;
        }
        if (CanBeReplaced(machine.files, saved[k], originals[k], sink, result)) {
            sink.ReplaceBegins(*originals[k]);
            result.report.written.push_back(*originals[k]);
            const std::string failure = restorer.Restore(saved[k], *originals[k]);
            if (!failure.empty()) {
                result.report.Add(saved[k] + " -> " + *originals[k], failure);
                ++result.report.failed;
            }
            sink.Breathe();
        }
    }
    restorer.Finish();
    result.nothingToLog = saved.size() == 1 && result.notListed + result.notLocated > 0;
    return error::success;
}

}  // namespace marlok
