#include "engine/CopyLoop.h"

#include <algorithm>
#include <utility>

#include "fileops/Deleting.h"
#include "fileops/FileOperations.h"
#include "fileops/FolderFunctions.h"
#include "fileops/FolderListing.h"
#include "fileops/Replacing.h"
#include "paths/Path.h"
#include "paths/WorkingFiles.h"

namespace marlok {

namespace {

/// Copies that one record of the journal announces. A record costs as much as a small write; a run that is killed has
/// at most so many files looked at by the next one.
constexpr std::size_t groupSize = 256;

constexpr const char* nameReserved = "not saved: this place is needed for a file of the program";
constexpr const char* folderInPlace = "not saved: a folder of that name stands where its saved copy belongs";
constexpr const char* takenForFolder = "not saved: a file without a three-letter extension is taken for a folder";
constexpr const char* takenForFile =
    "its files were not saved: a folder whose name ends in a three-letter extension is taken for a file";

}  // namespace

std::uint32_t GetEntrySize(const DirectoryEntry& entry) {
    return static_cast<std::uint32_t>(entry.size);
}

int CompareWriteTimes(const DirectoryEntry& first, const DirectoryEntry& second) {
    if (first.lastWriteTime == second.lastWriteTime) {
        return 0;
    }
    return first.lastWriteTime < second.lastWriteTime ? -1 : 1;
}

CopyLoop::CopyLoop(const CopyTools& tools, const Location& location)
    : machine_(tools.machine),
      files_(tools.machine.files),
      plan_(tools.plan),
      places_(tools.places),
      sink_(tools.sink),
      report_(tools.report),
      location_(location),
      journal_(tools.machine.files, location) {}

void CopyLoop::BackupSource(const std::string& source, FolderScan& scan) {
    for (ScannedFolder& entry : scan.folders) {
        if (!sink_.GoOn()) {
            return;
        }
        if (entry.parent == ScannedFolder::noParent) {
            entry.path = source;
        }
        BackupEntry(entry);
    }
}

void CopyLoop::Finish(bool listed) {
    if (!listed) {
        journal_.Leave();
        return;
    }
    const SystemError code = journal_.Finish();
    if (code != error::success) {
        report_.Add(location_.Journal(), code);
    }
}

void CopyLoop::BackupEntry(ScannedFolder& entry) {
    const std::string target = location_.SavedPathOf(entry.path);
    sink_.EntryBegins(entry.path, target);
    if (HasThreeLetterExtension(entry.path)) {
        BackupFileEntry(entry.path, target);
    } else {
        BackupFolderEntry(entry, target);
    }
}

void CopyLoop::BackupFileEntry(const std::string& source, const std::string& target) {
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    const SystemError code = files_.FindFirst(source, search, entry);
    search.reset();
    if (code != error::success) {
        report_.Add(source, code);
    } else if (entry.IsFolder()) {
        ReportPassedOver(source);
    } else {
        BackupThisFile(entry, source, target);
    }
}

void CopyLoop::BackupFolderEntry(ScannedFolder& folder, const std::string& target) {
    const std::string source = WithoutBackslash(folder.path);
    std::vector<DirectoryEntry> entries;
    const SystemError listed = ListFiles(folder, entries);
    if (listed != error::success) {
        ReportUnlisted(source, listed);
        // A listing that broke off is worked through as far as it came.
        if (entries.empty()) {
            return;
        }
    }
    SavedFolder saved;
    const SystemError made = MakeTargetFolders(target, saved);
    if (made != error::success) {
        report_.Add(source, made);
        return;
    }
    BackupFolderFiles(entries, source, target, saved);
}

/// The files directly in the folder.
SystemError CopyLoop::ListFiles(ScannedFolder& folder, std::vector<DirectoryEntry>& entries) {
    if (folder.files) {
        entries = std::move(*folder.files);
        folder.files.reset();
        return error::success;
    }
    return ListFolder(files_, folder.path, [&entries](DirectoryEntry& entry) {
        if (!entry.IsFolder()) {
            entries.push_back(std::move(entry));
        }
        return true;
    });
}

void CopyLoop::ReportUnlisted(const std::string& source, SystemError code) {
    DirectoryEntry entry;
    const SystemError looked = files_.GetEntry(source, entry);
    if (looked == error::success && !entry.IsFolder()) {
        report_.Add(source, takenForFolder);
    } else {
        report_.Add(source, looked != error::success ? looked : code);
    }
}

/// A folder taken for a file by its name: nothing in it is copied as part of this entry, so it must not go unmentioned.
void CopyLoop::ReportPassedOver(const std::string& folder) {
    bool holdsFile = false;
    // One that cannot be listed is reported by the scan.
    static_cast<void>(ListFolder(files_, folder, [&holdsFile](DirectoryEntry& entry) {
        holdsFile = !entry.IsFolder();
        return !holdsFile;
    }));
    if (holdsFile) {
        report_.Add(folder, takenForFile);
    }
}

SystemError CopyLoop::MakeTargetFolders(const std::string& folder, SavedFolder& saved) {
    SystemError code = saved.Read(files_, folder);
    if (code != error::pathNotFound && code != error::fileNotFound) {
        return code;
    }
    // Folders come before what lies in them, so usually one creation does.
    code = files_.CreateFolder(WithoutBackslash(folder));
    if (code == error::pathNotFound && CreateNestedFolders(files_, machine_.process, folder)) {
        code = error::success;
    }
    return code == error::alreadyExists ? saved.Read(files_, folder) : code;
}

void CopyLoop::BackupThisFile(const DirectoryEntry& entry, const std::string& source, const std::string& target) {
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry savedCopy;
    const bool found = files_.FindFirst(target, search, savedCopy) == error::success;
    search.reset();
    std::vector<Chosen> chosen;
    Choose(entry, source, target, found ? &savedCopy : nullptr, chosen);
    CopyAll(chosen);
}

void CopyLoop::BackupFolderFiles(const std::vector<DirectoryEntry>& entries, const std::string& source,
                                 const std::string& target, const SavedFolder& saved) {
    std::vector<Chosen> chosen;
    for (const DirectoryEntry& entry : entries) {
        Choose(entry, Join(source, entry.name), Join(target, entry.name), saved.Find(entry.name), chosen);
    }
    CopyAll(chosen);
}

void CopyLoop::Choose(const DirectoryEntry& entry, const std::string& source, const std::string& target,
                      const DirectoryEntry* savedCopy, std::vector<Chosen>& chosen) {
    if (!places_.MaySave(target)) {
        Refuse(source, nameReserved);
        return;
    }
    if (savedCopy != nullptr && savedCopy->IsFolder()) {
        Refuse(source, folderInPlace);
        return;
    }
    // Size and attributes never change the outcome: a source that is older than its saved copy, or has the same time
    // and another size, is deliberately not copied.
    const bool later = savedCopy == nullptr || plan_.allFiles || CompareWriteTimes(entry, *savedCopy) == 1;
    if (later) {
        chosen.push_back({entry.size, entry.lastWriteTime, source, target, savedCopy != nullptr});
    } else {
        ++report_.unchanged;
        sink_.Unchanged(source);
    }
}

void CopyLoop::CopyAll(const std::vector<Chosen>& chosen) {
    const std::span<const Chosen> all(chosen);
    for (std::size_t start = 0; start < all.size(); start += groupSize) {
        const auto group = all.subspan(start, std::min(groupSize, all.size() - start));
        const bool recorded = RecordGroup(group);
        for (const Chosen& file : group) {
            if (!sink_.GoOn()) {
                return;
            }
            CopyAndAccount(file, recorded);
        }
    }
}

void CopyLoop::CopyAndAccount(const Chosen& file, bool recorded) {
    sink_.CopyBegins(file.source, file.target);
    const SystemError code = CopyOne(file, recorded);
    if (code == error::success) {
        ++report_.copied;
        report_.written.push_back(file.target);
        originals_.push_back(file.source);
        sink_.Copied(file.source, file.target);
    } else {
        ++report_.failed;
        report_.Add(file.source, code);
        sink_.Failed(file.source);
    }
    sink_.Breathe();
}

bool CopyLoop::RecordGroup(std::span<const Chosen> group) {
    std::vector<JournalEntry> entries;
    entries.reserve(group.size());
    for (const Chosen& file : group) {
        entries.push_back(AsJournalEntry(file));
    }
    return journal_.Record(entries) == error::success;
}

JournalEntry CopyLoop::AsJournalEntry(const Chosen& file) const {
    return {file.size, file.time, file.replaces, location_.RelativeNameOf(file.target), file.source};
}

SystemError CopyLoop::CopyFile(const std::string& source, const std::string& target, std::uint32_t flags) {
    if (plan_.method == CopyMethod::copyWithProgress) {
        return CopyWithProgress(files_, source, target, flags, [this](const CopyProgressInfo& info) {
            sink_.BytesCopied(info);
            return CopyAnswer::goOn;
        });
    }
    return CopyPlain(files_, source, target, flags);
}

SystemError CopyLoop::CopyOne(const Chosen& file, bool recorded) {
    if (file.replaces || !recorded) {
        return CopyBeside(file);
    }
    const SystemError code = CopyStraight(file);
    // Somebody has put a file there since the folder was listed: it is a saved copy like any other.
    return code == error::fileExists ? CopyBeside(file) : code;
}

SystemError CopyLoop::CopyStraight(const Chosen& file) {
    const SystemError code = CopyFile(file.source, file.target, copyflag::failIfExists);
    DirectoryEntry torn;
    if (code != error::success && code != error::fileExists && files_.GetEntry(file.target, torn) == error::success &&
        ForceDelete(files_, file.target) != error::success) {
        journal_.KeepForNextRun(AsJournalEntry(file));
    }
    return code;
}

SystemError CopyLoop::CopyBeside(const Chosen& file) {
    const std::string part = Join(FolderOf(file.target), workingfile::part);
    SystemError code = CopyFile(file.source, part, copyflag::none);
    if (code == error::accessDenied && ForceDelete(files_, part) == error::success) {
        // A hidden or read-only neighbour of a killed run cannot be overwritten.
        code = CopyFile(file.source, part, copyflag::none);
    }
    if (code == error::success) {
        code = ForceReplace(files_, part, file.target);
    }
    DirectoryEntry left;
    if (code != error::success && files_.GetEntry(part, left) == error::success &&
        ForceDelete(files_, part) != error::success) {
        JournalEntry entry = AsJournalEntry(file);
        entry.replaces = true;
        journal_.KeepForNextRun(entry);
    }
    return code;
}

void CopyLoop::Refuse(const std::string& source, const std::string& reason) {
    report_.Add(source, reason);
    ++report_.failed;
    sink_.Failed(source);
}

}  // namespace marlok
