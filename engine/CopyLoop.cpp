#include "engine/CopyLoop.h"

#include <algorithm>

#include "fileops/Deleting.h"
#include "fileops/FileOperations.h"
#include "fileops/FolderFunctions.h"
#include "fileops/FolderListing.h"
#include "fileops/Replacing.h"
#include "fileops/txtFunctions.h"
#include "paths/Path.h"
#include "text/Text.h"

namespace marlok {

namespace {

/// Copies that one record of the journal announces. A record costs as much as a small write and a flush; a run that is
/// killed has at most so many files copied anew by the next one.
constexpr std::size_t groupSize = 256;

constexpr const char* nameReserved = "not saved: the program needs this name for a file of its own; rename the file";
constexpr const char* folderInPlace =
    "not saved: a folder of that name stands where its saved copy belongs; rename or delete that folder in the backup "
    "location";
constexpr const char* noFolder =
    "not saved: its folder is not in the backup location; take it off the list and add it again, which makes the "
    "folder";
constexpr const char* tooLarge =
    "not saved: it is larger than this disk can hold (4 GB); choose a location on an NTFS or exFAT disk";
constexpr const char* decrypted = "saved decrypted: the backup location cannot hold encrypted files";
constexpr const char* unreadableLink = "not saved: a link of Windows' own that no program can read";

std::string SamePlace(const std::string& other) {
    return "not saved: " + other + " is saved in the same place; give one of the two a backup location of its own";
}

std::string ShortName(const std::string& longName) {
    return "not saved: its name is the short name of \"" + longName +
           "\" in the backup location; rename one of the two";
}

/// What follows `folder` and a "\" in `path`, letter case ignored; false when `path` does not lie below it. Everything
/// lies below "".
bool TakeBelow(const std::string& path, const std::string& folder, std::string& rest) {
    if (folder.empty()) {
        rest = path;
        return true;
    }
    if (path.size() <= folder.size() || path[folder.size()] != '\\' ||
        !text::EqualIgnoringCase(std::string_view(path).substr(0, folder.size()), folder)) {
        return false;
    }
    rest = path.substr(folder.size() + 1);
    return true;
}

bool IsTaken(SystemError code) {
    return code == error::fileExists || code == error::alreadyExists;
}

}  // namespace

CopyLoop::CopyLoop(const RunTools& tools, const Location& location, RunJournal& journal,
                   std::vector<ScannedSource>& sources, const SourceMap& map)
    : machine_(tools.machine),
      files_(tools.machine.files),
      plan_(tools.plan),
      places_(tools.places),
      sink_(tools.sink),
      report_(tools.report),
      location_(location),
      journal_(journal),
      sources_(sources),
      map_(map),
      rivals_(tools.places.RivalsOf(location)) {
    // Where the system does not tell, nothing special is known of the disk.
    static_cast<void>(files_.GetVolume(location.Path(), volume_));
}

void CopyLoop::BackupSource(std::size_t source) {
    if (sources_[source].isFile) {
        BackupFile(source);
        return;
    }
    for (std::size_t folder = 0; folder < sources_[source].scan.folders.size(); ++folder) {
        if (!sink_.GoOn() || abandoned_) {
            return;
        }
        BackupFolder(source, folder);
    }
}

void CopyLoop::BackupFile(std::size_t source) {
    const ScannedSource& file = sources_[source];
    const std::string target = location_.SavedPathOf(file.path);
    sink_.EntryBegins(file.path, target);
    bool contested = false;
    if (!IsPartOfFolder(source, contested)) {
        BackupThisFile({file, FolderOf(file.path), FolderOf(target), contested}, file.entry);
    }
}

/// True when a folder that is a source too saves the file, or the same file stands in the list before.
bool CopyLoop::IsPartOfFolder(std::size_t source, bool& contested) {
    const std::string& path = sources_[source].path;
    const SourceMap::Place* place = map_.At(FolderOf(location_.RelativeNameOf(location_.SavedPathOf(path))));
    for (const SourceMap::FolderRef& ref : place->folders) {
        if (places_.Where().Same(sources_[ref.source].scan.folders[ref.folder].path, FolderOf(path)) == Answer::yes) {
            return true;
        }
        contested = true;
    }
    for (const std::size_t other : place->files) {
        if (other < source && text::EqualIgnoringCase(sources_[other].path, path)) {
            return true;
        }
        contested = contested || other != source;
    }
    return false;
}

/// True when the very same folder has been backed up before, as part of another source.
bool CopyLoop::IsDone(std::size_t source, std::size_t folder, const SourceMap::Place& place, bool& contested) {
    const std::string& path = sources_[source].scan.folders[folder].path;
    for (const SourceMap::FolderRef& ref : place.folders) {
        if (ref.source == source && ref.folder == folder) {
            continue;
        }
        const std::string& other = sources_[ref.source].scan.folders[ref.folder].path;
        if (text::EqualIgnoringCase(other, path) || places_.Where().Same(other, path) == Answer::yes) {
            if (ref.source < source) {
                return true;
            }
            continue;
        }
        contested = true;
    }
    contested = contested || std::ranges::any_of(place.files, [&](std::size_t file) {
                    return !text::EqualIgnoringCase(FolderOf(sources_[file].path), path);
                });
    return false;
}

void CopyLoop::BackupFolder(std::size_t source, std::size_t index) {
    ScannedFolder& folder = sources_[source].scan.folders[index];
    const std::string target = WithoutBackslash(location_.SavedPathOf(folder.path));
    bool contested = false;
    if (IsDone(source, index, *map_.At(WithoutBackslash(location_.RelativeNameOf(AddBackslash(target)))), contested)) {
        return;
    }
    sink_.EntryBegins(folder.path, target);
    std::vector<DirectoryEntry> entries;
    const SystemError listed = ListFiles(folder, entries);
    if (listed != error::success) {
        report_.Add(folder.path, listed);
        // A listing that broke off is worked through as far as it came.
        if (entries.empty()) {
            return;
        }
    }
    SavedFolder saved;
    const SystemError made = MakeTargetFolders(target, saved);
    if (abandoned_) {
        return;
    }
    if (made != error::success) {
        report_.Add(folder.path, made);
        for (const DirectoryEntry& entry : entries) {
            CountFailed(Join(folder.path, entry.name));
        }
        return;
    }
    BackupFolderFiles({sources_[source], folder.path, target, contested}, entries, saved);
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

SystemError CopyLoop::MakeTargetFolders(const std::string& folder, SavedFolder& saved) {
    SystemError code = saved.Read(files_, folder);
    if (!IsMissing(code)) {
        return code;
    }
    if (!BeginWriting()) {
        return error::success;
    }
    // Folders come before what lies in them, so usually one creation does.
    code = files_.CreateFolder(folder);
    if (code == error::success) {
        return code;
    }
    if (code == error::pathNotFound && CreateNestedFolders(files_, machine_.process, folder)) {
        code = error::alreadyExists;
    }
    return code == error::alreadyExists ? saved.Read(files_, folder) : code;
}

/// False when another run has been found at work.
bool CopyLoop::BeginWriting() {
    if (!abandoned_ && journal_.Begin() == RunJournal::Begun::inUse) {
        abandoned_ = true;
        report_.Add(location_.Path(), anotherRunAtWork);
    }
    return !abandoned_;
}

void CopyLoop::BackupThisFile(const Work& work, const DirectoryEntry& entry) {
    DirectoryEntry file = entry;
    file.name = FileNameOf(work.source.path);
    const SavedFolder::Found saved = FindOnVolume(files_, Join(work.target, file.name));
    if (saved.code == error::pathNotFound) {
        Refuse(work.source.path, noFolder);
        return;
    }
    std::vector<Chosen> chosen;
    Choose(work, file, saved, chosen);
    CopyAll(work, chosen);
}

void CopyLoop::BackupFolderFiles(const Work& work, std::vector<DirectoryEntry>& entries, const SavedFolder& saved) {
    std::vector<Chosen> chosen;
    for (DirectoryEntry& entry : entries) {
        Choose(work, entry, saved.Find(files_, entry.name), chosen);
    }
    CopyAll(work, chosen);
}

/// A link to a file is what it leads to. False when that cannot be looked at, which is dealt with.
bool CopyLoop::ResolveLink(const std::string& source, DirectoryEntry& entry) {
    std::string finalPath;
    DirectoryEntry target;
    SystemError code = files_.FinalPath(source, finalPath);
    if (code == error::success) {
        code = files_.GetEntry(finalPath, target);
    }
    if (code == error::cannotAccessFile) {
        report_.Note(source, unreadableLink);
        return false;
    }
    if (code != error::success) {
        Fail({0, 0, source, "", false}, code);
        return false;
    }
    entry.size = target.size;
    entry.lastWriteTime = target.lastWriteTime;
    return true;
}

void CopyLoop::Choose(const Work& work, DirectoryEntry& entry, const SavedFolder::Found& saved,
                      std::vector<Chosen>& chosen) {
    const std::string source = Join(work.from, entry.name);
    if (entry.IsLink() && !ResolveLink(source, entry)) {
        return;
    }
    const Chosen file{entry.size, entry.lastWriteTime, source, Join(work.target, entry.name),
                      saved.code == error::success};
    if (const std::string other = EarlierOriginal(work, file); !other.empty()) {
        Refuse(source, SamePlace(other));
        return;
    }
    if (!places_.MaySave(file.target)) {
        Refuse(source, nameReserved);
        return;
    }
    if (!file.replaces && !IsMissing(saved.code)) {
        Claim(work, file.source, file.target);
        Fail(file, saved.code);
        return;
    }
    if (file.replaces && saved.entry.IsFolder()) {
        Refuse(source, folderInPlace);
        return;
    }
    std::string taken = file.replaces ? WhyTaken(work, file, saved) : "";
    if (taken.empty() && !rivals_.empty()) {
        const std::string other = OtherOriginal(source, file.target);
        taken = other.empty() ? "" : SamePlace(other);
    }
    if (!taken.empty()) {
        Refuse(source, taken);
        return;
    }
    if (file.replaces) {
        Decide(work, entry, file, saved.entry, chosen);
    } else {
        chosen.push_back(file);
    }
}

/// A file that has a saved copy.
void CopyLoop::Decide(const Work& work, const DirectoryEntry& entry, const Chosen& file, const DirectoryEntry& saved,
                      std::vector<Chosen>& chosen) {
    const bool anyway = plan_.allFiles || journal_.MayBeTorn(location_.RelativeNameOf(file.target));
    const Verdict verdict = anyway ? Verdict::copy : Judge(entry, saved, work.source.times);
    switch (verdict) {
        case Verdict::copy:
            chosen.push_back(file);
            return;
        case Verdict::different:
            report_.different.push_back(file.source);
            break;
        case Verdict::unchanged:
            ++report_.unchanged;
            break;
    }
    Claim(work, file.source, file.target);
    sink_.Unchanged(file.source);
    if (listsUnchanged_) {
        originals_.push_back(file.source);
    }
}

/// Why a saved file that bears the name of `file`, as the volume takes names, is not its saved copy; "" when it is.
std::string CopyLoop::WhyTaken(const Work& work, const Chosen& file, const SavedFolder::Found& saved) {
    const std::string name = FileNameOf(file.source);
    if (saved.entry.name != name) {
        const SavedFolder::Found other = FindOnVolume(files_, Join(work.from, saved.entry.name));
        if (other.code == error::success && other.entry.name == saved.entry.name && !other.entry.IsFolder()) {
            return SamePlace(Join(work.from, saved.entry.name));
        }
        if (!saved.entry.alternateName.empty() && text::EqualIgnoringCase(saved.entry.alternateName, name)) {
            return ShortName(saved.entry.name);
        }
    }
    return "";
}

/// The original that has the place of `file`, or has been the first to try; "" when none but `file` has.
std::string CopyLoop::EarlierOriginal(const Work& work, const Chosen& file) {
    for (const std::string& key : ClaimKeys(work, file.target)) {
        const auto claim = claims_.find(key);
        if (claim != claims_.end() && claim->second != file.source) {
            return claim->second;
        }
    }
    return "";
}

/// What stands for a place that others may come for: its name, and what is there already, whatever it is called.
std::vector<std::string> CopyLoop::ClaimKeys(const Work& work, const std::string& target) {
    std::vector<std::string> keys;
    if (work.contested) {
        keys.push_back(text::Fold(target));
        FileIdentity identity;
        if (files_.Identify(target, identity) == error::success && !identity.NumbersNothing()) {
            keys.push_back(std::to_string(identity.volume) + "/" + std::to_string(identity.high) + "/" +
                           std::to_string(identity.index));
        }
    }
    return keys;
}

/// Remembers whose place this is, where others may come for the same.
void CopyLoop::Claim(const Work& work, const std::string& source, const std::string& target) {
    for (std::string& key : ClaimKeys(work, target)) {
        claims_.try_emplace(std::move(key), source);
    }
}

/// An original that another location, which comes first in the settings, saves in the same place; "" for none.
std::string CopyLoop::OtherOriginal(const std::string& source, const std::string& target) {
    const std::string relative = location_.RelativeNameOf(target);
    for (const SavePlaces::Rival& rival : rivals_) {
        std::string there;
        if (!rival.earlier || !TakeBelow(relative, rival.folder, there)) {
            continue;
        }
        if (!rival.above.empty()) {
            there = Join(rival.above, there);
        }
        std::string rest;
        std::string other = WithoutBackslash(rival.source);
        if (!text::EqualIgnoringCase(there, rival.relative)) {
            if (!TakeBelow(there, rival.relative, rest)) {
                continue;
            }
            other = Join(other, rest);
        }
        DirectoryEntry entry;
        if (!text::EqualIgnoringCase(other, source) && files_.GetEntry(other, entry) == error::success &&
            !entry.IsFolder() && places_.Where().Same(other, source) != Answer::yes) {
            return other;
        }
    }
    return "";
}

void CopyLoop::CopyAll(const Work& work, const std::vector<Chosen>& chosen) {
    if (chosen.empty() || !BeginWriting()) {
        return;
    }
    const std::span<const Chosen> all(chosen);
    for (std::size_t start = 0; start < all.size(); start += groupSize) {
        const auto group = all.subspan(start, std::min(groupSize, all.size() - start));
        const bool recorded = RecordGroup(group);
        for (const Chosen& file : group) {
            if (!sink_.GoOn()) {
                return;
            }
            CopyAndAccount(work, file, recorded);
        }
    }
}

void CopyLoop::CopyAndAccount(const Work& work, const Chosen& file, bool recorded) {
    sink_.CopyBegins(file.source, file.target);
    std::string taken;
    const SystemError code = CopyOne(work, file, recorded, taken);
    if (!taken.empty()) {
        Refuse(file.source, taken);
    } else if (code == error::success) {
        ++report_.copied;
        report_.bytes += file.size;
        report_.written.push_back(file.target);
        originals_.push_back(file.source);
        journal_.Settle(location_.RelativeNameOf(file.target));
        Claim(work, file.source, file.target);
        sink_.Copied(file.source, file.target);
    } else if (code != error::requestAborted) {
        Claim(work, file.source, file.target);
        Fail(file, code);
    }
    sink_.Breathe();
}

bool CopyLoop::RecordGroup(std::span<const Chosen> group) {
    std::vector<JournalEntry> entries;
    entries.reserve(group.size());
    for (const Chosen& file : group) {
        entries.push_back(AsJournalEntry(file));
    }
    return journal_.Record(entries);
}

JournalEntry CopyLoop::AsJournalEntry(const Chosen& file) const {
    return {file.size, file.time, file.replaces, location_.RelativeNameOf(file.target), file.source};
}

SystemError CopyLoop::CopyBytes(const std::string& source, const std::string& target, std::uint32_t flags) {
    if (plan_.method == CopyMethod::copyWithProgress) {
        return CopyWithProgress(files_, source, target, flags, [this](const CopyProgressInfo& info) {
            sink_.BytesCopied(info);
            return sink_.GoOn() ? CopyAnswer::goOn : CopyAnswer::cancel;
        });
    }
    return CopyPlain(files_, source, target, flags);
}

SystemError CopyLoop::CopyFile(const std::string& source, const std::string& target, std::uint32_t flags) {
    SystemError code = CopyBytes(source, target, flags);
    if (code == error::encryptionFailed) {
        code = CopyBytes(source, target, flags | copyflag::allowDecryptedDestination);
        if (code == error::success) {
            report_.Note(source, decrypted);
        }
    }
    return code;
}

SystemError CopyLoop::CopyOne(const Work& work, const Chosen& file, bool recorded, std::string& taken) {
    if (file.replaces) {
        return CopyBeside(file);
    }
    SystemError code = error::fileExists;
    if (recorded) {
        code = CopyStraight(file);
    }
    if (!IsTaken(code)) {
        return code;
    }
    // Either nothing may be written straight to its place, or something has been put there since the folder was listed:
    // a saved copy like any other, or that of another original whose name is the same to the volume.
    const SavedFolder::Found there = FindOnVolume(files_, file.target);
    if (there.code == error::success) {
        taken = WhyTaken(work, file, there);
    } else if (!IsMissing(there.code)) {
        return there.code;
    }
    return taken.empty() ? CopyBeside(file) : error::success;
}

SystemError CopyLoop::CopyStraight(const Chosen& file) {
    const SystemError code = CopyFile(file.source, file.target, copyflag::failIfExists);
    DirectoryEntry torn;
    // A file that is there although this call was told to fail for one that exists was made by this call.
    if (code != error::success && !IsTaken(code) && !IsMissing(files_.GetEntry(file.target, torn)) &&
        ForceDelete(files_, file.target) != error::success) {
        journal_.MarkUnsettled(AsJournalEntry(file));
    }
    return code;
}

SystemError CopyLoop::CopyBeside(const Chosen& file) {
    const std::string part = Join(FolderOf(file.target), journal_.PartName());
    SystemError code = CopyFile(file.source, part, copyflag::none);
    if (code == error::accessDenied && ForceDelete(files_, part) == error::success) {
        // A hidden or read-only neighbour of a killed run cannot be overwritten.
        code = CopyFile(file.source, part, copyflag::none);
    }
    if (code == error::success) {
        code = ForceReplace(files_, part, file.target);
    }
    DirectoryEntry left;
    if (code != error::success && !IsMissing(files_.GetEntry(part, left)) &&
        ForceDelete(files_, part) != error::success) {
        JournalEntry entry = AsJournalEntry(file);
        entry.replaces = true;
        journal_.MarkUnsettled(entry);
    }
    return code;
}

void CopyLoop::Refuse(const std::string& source, const std::string& reason) {
    report_.Add(source, reason);
    CountFailed(source);
}

void CopyLoop::CountFailed(const std::string& source) {
    ++report_.failed;
    sink_.Failed(source);
}

void CopyLoop::Fail(const Chosen& file, SystemError code) {
    const bool full = code == error::diskFull || code == error::handleDiskFull;
    if (full && file.size > volume_.LargestFile()) {
        Refuse(file.source, tooLarge);
        return;
    }
    report_.Add(file.source, code);
    CountFailed(file.source);
}

}  // namespace marlok
