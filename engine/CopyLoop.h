#pragma once

#include <functional>
#include <string>
#include <vector>

#include "engine/Breather.h"
#include "engine/Program.h"
#include "engine/RunJournal.h"
#include "engine/RunReport.h"
#include "engine/SavePlaces.h"
#include "engine/SavedFolder.h"
#include "fileops/ListedFolders.h"
#include "forms/Controls.h"

namespace marlok {

/// Copies one file, an existing destination being overwritten; `flags` are extra `copyflag::` bits.
using CopyPrimitive =
    std::function<SystemError(const std::string& source, const std::string& destination, std::uint32_t flags)>;

/// The controls of a run window that the copy loop works with.
struct RunControls {
    forms::ListBox& List1;  ///< folders below the current source
    forms::ListBox& List2;  ///< saved copies written in this run
    forms::ListBox& List3;  ///< source files written for the current location
    forms::TextBox& Text1;  ///< source of the entry being worked on
    forms::TextBox& Text2;  ///< its target
};

/// Where a source is saved: the location, and the source without its drive root. So equal paths on two drives share one
/// target. A network source keeps its server and share as folders. Expects `location` with a "\" at its end.
[[nodiscard]] std::string TargetPath(const std::string& source, const std::string& location);

/// Lower 32 bits of an entry's size.
[[nodiscard]] std::uint32_t GetEntrySize(const DirectoryEntry& entry);

/// -1, 0 or 1: the first entry was written earlier than the second, at the same time, or later.
[[nodiscard]] int CompareWriteTimes(const DirectoryEntry& first, const DirectoryEntry& second);

/// Decides file by file whether a source is written into a backup location, writes it and records what was written. One
/// object serves one location.
///
/// A saved copy is never torn: where one exists, the new copy is written beside it and takes its place when it is
/// whole; where none exists the copy goes straight to its place, under the run's journal. A copy that fails is reported
/// and not listed.
class CopyLoop {
 public:
    CopyLoop(Program& program, const RunControls& controls, CopyPrimitive copy, RunReport& report, SavePlaces& places,
             const std::string& location);

    /// Takes the files of a folder from `listed` where they are kept there, instead of listing it; `listed` outlives
    /// this object.
    void UseListing(ListedFolders& listed) { listed_ = &listed; }

    /// Backs up one source: the source itself, then every folder of List1.
    void BackupSource(const std::string& source);

    /// Ends the location's journal. When the original paths could not be listed it is left for the next run, which
    /// lists them.
    void Finish(bool listed);

 private:
    /// A file that the change rule has chosen.
    struct Chosen {
        std::uint64_t size;
        FileTime time;
        std::string source;
        std::string target;
        bool replaces;
    };

    void BackupEntry(const std::string& source);
    void BackupFileEntry();
    void BackupFolderEntry();
    void BackupThisFile(const DirectoryEntry& entry, const std::string& source, const std::string& target);
    void BackupFolderFiles(const std::vector<DirectoryEntry>& entries, const SavedFolder& saved);
    [[nodiscard]] SystemError ListFiles(const std::string& folder, std::vector<DirectoryEntry>& entries);

    /// Applies the change rule: adds the file to `chosen`, or counts it as unchanged or failed.
    void Choose(const DirectoryEntry& entry, const std::string& source, const std::string& target,
                const DirectoryEntry* savedCopy, std::vector<Chosen>& chosen);

    [[nodiscard]] SystemError MakeTargetFolders(const std::string& folder, SavedFolder& saved);
    void CopyAll(const std::vector<Chosen>& chosen);
    [[nodiscard]] bool RecordGroup(std::span<const Chosen> group);
    [[nodiscard]] SystemError CopyOne(const Chosen& file, bool recorded);
    [[nodiscard]] SystemError CopyStraight(const Chosen& file);
    [[nodiscard]] SystemError CopyBeside(const Chosen& file);
    [[nodiscard]] JournalEntry AsJournalEntry(const Chosen& file) const;
    void ReportUnlisted(const std::string& source, SystemError code);
    void ReportPassedOver(const std::string& folder);
    void Fail(const std::string& source, SystemError code);

    Program& program_;
    FileSystem& files_;
    RunControls controls_;
    CopyPrimitive copy_;
    RunReport& report_;
    SavePlaces& places_;
    std::string location_;  ///< with "\" at its end
    RunJournal journal_;
    ListedFolders* listed_ = nullptr;
    Breather breathe_;
};

}  // namespace marlok
