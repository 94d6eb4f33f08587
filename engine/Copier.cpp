#include "engine/Copier.h"

#include <algorithm>

#include "fileops/Deleting.h"
#include "fileops/FileOperations.h"
#include "fileops/FolderFunctions.h"
#include "fileops/Replacing.h"
#include "fileops/txtFunctions.h"
#include "paths/Path.h"

namespace marlok {

namespace {

/// Copies that one record of the journal announces. A record costs as much as a small write and a flush; a run that is
/// killed has at most so many files copied anew by the next one.
constexpr std::size_t groupSize = 256;

constexpr const char* tooLarge =
    "not saved: it is larger than this disk can hold (4 GB); choose a location on an NTFS or exFAT disk";
constexpr const char* decrypted = "saved decrypted: the backup location cannot hold encrypted files";

bool IsTaken(SystemError code) {
    return code == error::fileExists || code == error::alreadyExists;
}

}  // namespace

Copier::Copier(const RunTools& tools, const Location& location, RunJournal& journal, PlaceClaims& claims)
    : machine_(tools.machine),
      files_(tools.machine.files),
      plan_(tools.plan),
      sink_(tools.sink),
      report_(tools.report),
      location_(location),
      journal_(journal),
      claims_(claims) {
    // Where the system does not tell, nothing special is known of the disk.
    static_cast<void>(files_.GetVolume(location.Path(), volume_));
}

void Copier::IsSaved(const std::string& source) {
    if (listsUnchanged_) {
        originals_.push_back(source);
    }
}

bool Copier::MayBeTorn(const std::string& target) const {
    return journal_.MayBeTorn(target);
}

SystemError Copier::EnterFolder(const std::string& folder, SavedFolder& saved) {
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
bool Copier::BeginWriting() {
    if (!abandoned_ && journal_.Begin() == RunJournal::Begun::inUse) {
        abandoned_ = true;
        report_.Add(location_.Path(), anotherRunAtWork);
    }
    return !abandoned_;
}

void Copier::Take(const FolderWork& work, const std::vector<ChosenFile>& chosen) {
    if (chosen.empty() || !BeginWriting()) {
        return;
    }
    const std::span<const ChosenFile> all(chosen);
    for (std::size_t start = 0; start < all.size(); start += groupSize) {
        const auto group = all.subspan(start, std::min(groupSize, all.size() - start));
        const bool recorded = RecordGroup(group);
        for (const ChosenFile& file : group) {
            if (!sink_.GoOn()) {
                return;
            }
            CopyAndAccount(work, file, recorded);
        }
    }
}

void Copier::CopyAndAccount(const FolderWork& work, const ChosenFile& file, bool recorded) {
    sink_.CopyBegins(file.source, file.target);
    std::string taken;
    const SystemError code = CopyOne(work, file, recorded, taken);
    if (!taken.empty()) {
        report_.AddFailed(file.source, taken);
        sink_.Failed(file.source);
    } else if (code == error::success) {
        ++report_.copied;
        report_.bytes += file.size;
        report_.written.push_back(file.target);
        originals_.push_back(file.source);
        journal_.Settle(location_.RelativeNameOf(file.target));
        claims_.Claim(work, file.source, file.target);  // by the file that is there now
        sink_.Copied(file.source, file.target);
    } else if (code != error::requestAborted) {
        Fail(file, code);
    }
    sink_.Breathe();
}

bool Copier::RecordGroup(std::span<const ChosenFile> group) {
    std::vector<JournalEntry> entries;
    entries.reserve(group.size());
    for (const ChosenFile& file : group) {
        entries.push_back(AsJournalEntry(file));
    }
    return journal_.Record(entries);
}

JournalEntry Copier::AsJournalEntry(const ChosenFile& file) const {
    return {file.size, file.time, file.replaces, location_.RelativeNameOf(file.target), file.source};
}

SystemError Copier::CopyBytes(const std::string& source, const std::string& target, std::uint32_t flags) {
    if (plan_.method == CopyMethod::copyWithProgress) {
        return CopyWithProgress(files_, source, target, flags, [this](const CopyProgressInfo& info) {
            sink_.BytesCopied(info);
            return sink_.GoOn() ? CopyAnswer::goOn : CopyAnswer::cancel;
        });
    }
    return CopyPlain(files_, source, target, flags);
}

SystemError Copier::CopyFile(const std::string& source, const std::string& target, std::uint32_t flags) {
    SystemError code = CopyBytes(source, target, flags);
    if (code == error::encryptionFailed) {
        code = CopyBytes(source, target, flags | copyflag::allowDecryptedDestination);
        if (code == error::success) {
            report_.Note(source, decrypted);
        }
    }
    return code;
}

SystemError Copier::CopyOne(const FolderWork& work, const ChosenFile& file, bool recorded, std::string& taken) {
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
        taken = claims_.WhyTaken(work, file.source, there);
        if (taken.empty()) {
            taken = claims_.WhyClaimed(work, file.source, file.target);
        }
    } else if (!IsMissing(there.code)) {
        return there.code;
    }
    return taken.empty() ? CopyBeside(file) : error::success;
}

SystemError Copier::CopyStraight(const ChosenFile& file) {
    const SystemError code = CopyFile(file.source, file.target, copyflag::failIfExists);
    DirectoryEntry torn;
    // A file that is there although this call was told to fail for one that exists was made by this call.
    if (code != error::success && !IsTaken(code) && !IsMissing(files_.GetEntry(file.target, torn)) &&
        ForceDelete(files_, file.target) != error::success) {
        journal_.MarkUnsettled(AsJournalEntry(file));
    }
    return code;
}

SystemError Copier::CopyBeside(const ChosenFile& file) {
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

void Copier::Fail(const ChosenFile& file, SystemError code) {
    const bool full = code == error::diskFull || code == error::handleDiskFull;
    if (full && file.size > volume_.LargestFile()) {
        report_.AddFailed(file.source, tooLarge);
    } else {
        report_.AddFailed(file.source, code);
    }
    sink_.Failed(file.source);
}

}  // namespace marlok
