#include "engine/CopyLoop.h"

#include <algorithm>
#include <utility>

#include "engine/LocationName.h"
#include "fileops/FolderFunctions.h"
#include "fileops/WorkingFiles.h"
#include "fileops/txtFunctions.h"
#include "text/Text.h"

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

std::string TargetPath(const std::string& source, const std::string& location) {
    std::string_view relative = source;
    if (HasDriveRoot(source)) {
        relative.remove_prefix(3);
        if (relative.starts_with('\\')) {
            relative.remove_prefix(1);
        }
    } else {
        relative = text::Trim(relative, "\\");
    }
    return location + std::string(relative);
}

std::uint32_t GetEntrySize(const DirectoryEntry& entry) {
    return static_cast<std::uint32_t>(entry.size);
}

int CompareWriteTimes(const DirectoryEntry& first, const DirectoryEntry& second) {
    if (first.lastWriteTime == second.lastWriteTime) {
        return 0;
    }
    return first.lastWriteTime < second.lastWriteTime ? -1 : 1;
}

CopyLoop::CopyLoop(Program& program, const RunControls& controls, CopyPrimitive copy, RunReport& report,
                   SavePlaces& places, const std::string& location)
    : program_(program),
      files_(program.machine.files),
      controls_(controls),
      copy_(std::move(copy)),
      report_(report),
      places_(places),
      location_(AddBackslash(location)),
      journal_(program.machine.files, location),
      breathe_(program) {
    places_.EnterLocation(location);
}

void CopyLoop::BackupSource(const std::string& source) {
    BackupEntry(source);
    // By index: the list is the window's, and nothing here holds on to its lines.
    for (int i = 0; i < controls_.List1.ListCount() && !controls_.List1.List(i).empty(); ++i) {
        BackupEntry(controls_.List1.List(i));
    }
}

void CopyLoop::Finish(bool listed) {
    if (!listed) {
        journal_.Leave();
        return;
    }
    const SystemError code = journal_.Finish();
    if (code != error::success) {
        report_.Add(location_ + std::string(workingfile::journal), code);
    }
}

void CopyLoop::BackupEntry(const std::string& source) {
    controls_.Text1.Text = source;
    controls_.Text2.Text = TargetPath(source, location_);
    if (text::HasThreeLetterExtension(source)) {
        BackupFileEntry();
    } else {
        BackupFolderEntry();
    }
}

void CopyLoop::BackupFileEntry() {
    const std::string& source = controls_.Text1.Text;
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    const SystemError code = files_.FindFirst(source, search, entry);
    if (code != error::success) {
        Fail(source, code);
    } else if (entry.IsFolder()) {
        ReportPassedOver(source);
    } else {
        BackupThisFile(entry, source, controls_.Text2.Text);
    }
}

void CopyLoop::BackupFolderEntry() {
    const std::string source = AddBackslash(controls_.Text1.Text.Get());
    const std::string target = AddBackslash(controls_.Text2.Text.Get());
    controls_.Text1.Text = source;
    controls_.Text2.Text = target;
    std::vector<DirectoryEntry> entries;
    const SystemError listed = ListFiles(source, entries);
    if (listed != error::noMoreFiles) {
        ReportUnlisted(WithoutBackslash(source), listed);
        // A listing that broke off is worked through as far as it came.
        if (entries.empty()) {
            return;
        }
    }
    SavedFolder saved;
    const SystemError made = MakeTargetFolders(target, saved);
    if (made != error::success) {
        Fail(WithoutBackslash(source), made);
        return;
    }
    BackupFolderFiles(entries, saved);
}

/// The files directly in `folder`. `error::noMoreFiles` when the listing is complete, else why it is not.
SystemError CopyLoop::ListFiles(const std::string& folder, std::vector<DirectoryEntry>& entries) {
    if (auto kept = listed_ == nullptr ? std::nullopt : listed_->Take(folder)) {
        entries = std::move(*kept);
        return error::noMoreFiles;
    }
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    SystemError code = files_.FindFirst(folder + "*.*", search, entry);
    while (code == error::success) {
        if (!entry.IsFolder()) {
            entries.push_back(std::move(entry));
        }
        entry = DirectoryEntry();
        code = search->Next(entry);
    }
    return code;
}

void CopyLoop::ReportUnlisted(const std::string& source, SystemError code) {
    DirectoryEntry entry;
    const SystemError looked = files_.GetEntry(source, entry);
    if (looked == error::success && !entry.IsFolder()) {
        report_.Add(source, takenForFolder);
    } else if (looked != error::success || code != error::fileNotFound) {
        // The root of an empty drive lists nothing, not even itself: there is nothing to save then.
        Fail(source, looked != error::success ? looked : code);
    }
}

/// A folder taken for a file by its name: nothing in it is copied as part of this entry, so it must not go unmentioned.
void CopyLoop::ReportPassedOver(const std::string& folder) {
    DirectoryEntry entry;
    const auto search = OpenFolderSearch(files_, folder, entry);
    SystemError code = search ? error::success : error::noMoreFiles;
    while (code == error::success) {
        if (!entry.IsFolder()) {
            report_.Add(folder, takenForFile);
            return;
        }
        code = search->Next(entry);
    }
}

SystemError CopyLoop::MakeTargetFolders(const std::string& folder, SavedFolder& saved) {
    SystemError code = saved.Read(files_, folder);
    if (code != error::pathNotFound && code != error::fileNotFound) {
        return code;
    }
    // Folders come before what lies in them, so usually one creation does.
    code = files_.CreateFolder(WithoutBackslash(folder));
    if (code == error::pathNotFound && CreateNestedFolders(files_, program_.machine.process, folder)) {
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

void CopyLoop::BackupFolderFiles(const std::vector<DirectoryEntry>& entries, const SavedFolder& saved) {
    const std::string source = controls_.Text1.Text;
    const std::string target = controls_.Text2.Text;
    std::vector<Chosen> chosen;
    for (const DirectoryEntry& entry : entries) {
        Choose(entry, source + entry.name, target + entry.name, saved.Find(entry.name), chosen);
    }
    CopyAll(chosen);
}

void CopyLoop::Choose(const DirectoryEntry& entry, const std::string& source, const std::string& target,
                      const DirectoryEntry* savedCopy, std::vector<Chosen>& chosen) {
    if (!places_.MaySave(target)) {
        report_.Add(source, nameReserved);
        ++report_.failed;
        return;
    }
    if (savedCopy != nullptr && savedCopy->IsFolder()) {
        report_.Add(source, folderInPlace);
        ++report_.failed;
        return;
    }
    // Size and attributes never change the outcome: a source that is older than its saved copy, or has the same time
    // and another size, is deliberately not copied.
    const bool later = savedCopy == nullptr || program_.gAllFiles || CompareWriteTimes(entry, *savedCopy) == 1;
    if (later) {
        chosen.push_back({entry.size, entry.lastWriteTime, source, target, savedCopy != nullptr});
    } else {
        ++report_.unchanged;
    }
}

void CopyLoop::CopyAll(const std::vector<Chosen>& chosen) {
    const std::span<const Chosen> all(chosen);
    for (std::size_t start = 0; start < all.size(); start += groupSize) {
        const auto group = all.subspan(start, std::min(groupSize, all.size() - start));
        const bool recorded = RecordGroup(group);
        for (const Chosen& file : group) {
            const SystemError code = CopyOne(file, recorded);
            if (code == error::success) {
                ++report_.copied;
                controls_.List2.AddItem(file.target);
                controls_.List3.AddItem(file.source);
            } else {
                ++report_.failed;
                Fail(file.source, code);
            }
            breathe_();
        }
    }
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
    return {file.size, file.time, file.replaces, file.target.substr(location_.size()), file.source};
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
    const SystemError code = copy_(file.source, file.target, copyflag::failIfExists);
    DirectoryEntry torn;
    if (code != error::success && code != error::fileExists && files_.GetEntry(file.target, torn) == error::success &&
        ForceDelete(files_, file.target) != error::success) {
        journal_.KeepForNextRun(AsJournalEntry(file));
    }
    return code;
}

SystemError CopyLoop::CopyBeside(const Chosen& file) {
    const std::string part = AddBackslash(FolderOf(file.target)) + std::string(workingfile::part);
    SystemError code = copy_(file.source, part, copyflag::none);
    if (code == error::accessDenied && ForceDelete(files_, part) == error::success) {
        // A hidden or read-only neighbour of a killed run cannot be overwritten.
        code = copy_(file.source, part, copyflag::none);
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

void CopyLoop::Fail(const std::string& source, SystemError code) {
    report_.Add(source, code);
}

}  // namespace marlok
