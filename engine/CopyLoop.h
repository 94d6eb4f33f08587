#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "engine/RunJournal.h"
#include "engine/RunPlan.h"
#include "engine/RunReport.h"
#include "engine/RunSink.h"
#include "engine/SavePlaces.h"
#include "engine/SavedFolder.h"
#include "fileops/FolderScan.h"
#include "paths/Location.h"
#include "platform/Machine.h"

namespace marlok {

/// Lower 32 bits of an entry's size.
[[nodiscard]] std::uint32_t GetEntrySize(const DirectoryEntry& entry);

/// -1, 0 or 1: the first entry was written earlier than the second, at the same time, or later.
[[nodiscard]] int CompareWriteTimes(const DirectoryEntry& first, const DirectoryEntry& second);

/// What a copy loop works with. All of it outlives the loop.
struct CopyTools {
    Machine& machine;
    const RunPlan& plan;
    const SavePlaces& places;  ///< has entered the location
    RunSink& sink;
    RunReport& report;
};

/// Decides file by file whether a source is written into a backup location, writes it and records what was written. One
/// object serves one location.
///
/// A saved copy is never torn: where one exists, the new copy is written beside it and takes its place when it is
/// whole; where none exists the copy goes straight to its place, under the run's journal. A copy that fails is reported
/// and not listed.
class CopyLoop {
 public:
    CopyLoop(const CopyTools& tools, const Location& location);

    /// Backs up one source: the source itself, then every folder below it. Uses up what the scan has kept.
    void BackupSource(const std::string& source, FolderScan& scan);

    /// The sources that were copied and are not listed yet, in their order; handed over once.
    [[nodiscard]] std::vector<std::string> TakeOriginals() { return std::exchange(originals_, {}); }

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

    void BackupEntry(ScannedFolder& entry);
    void BackupFileEntry(const std::string& source, const std::string& target);
    void BackupFolderEntry(ScannedFolder& folder, const std::string& target);
    void BackupThisFile(const DirectoryEntry& entry, const std::string& source, const std::string& target);
    void BackupFolderFiles(const std::vector<DirectoryEntry>& entries, const std::string& source,
                           const std::string& target, const SavedFolder& saved);
    [[nodiscard]] SystemError ListFiles(ScannedFolder& folder, std::vector<DirectoryEntry>& entries);

    /// Applies the change rule: adds the file to `chosen`, or counts it as unchanged or failed.
    void Choose(const DirectoryEntry& entry, const std::string& source, const std::string& target,
                const DirectoryEntry* savedCopy, std::vector<Chosen>& chosen);

    [[nodiscard]] SystemError MakeTargetFolders(const std::string& folder, SavedFolder& saved);
    void CopyAll(const std::vector<Chosen>& chosen);
    void CopyAndAccount(const Chosen& file, bool recorded);
    [[nodiscard]] bool RecordGroup(std::span<const Chosen> group);
    [[nodiscard]] SystemError CopyFile(const std::string& source, const std::string& target, std::uint32_t flags);
    [[nodiscard]] SystemError CopyOne(const Chosen& file, bool recorded);
    [[nodiscard]] SystemError CopyStraight(const Chosen& file);
    [[nodiscard]] SystemError CopyBeside(const Chosen& file);
    [[nodiscard]] JournalEntry AsJournalEntry(const Chosen& file) const;
    void ReportUnlisted(const std::string& source, SystemError code);
    void ReportPassedOver(const std::string& folder);

    /// Reports a file that is not saved, and counts it.
    void Refuse(const std::string& source, const std::string& reason);

    Machine& machine_;
    FileSystem& files_;
    const RunPlan& plan_;
    const SavePlaces& places_;
    RunSink& sink_;
    RunReport& report_;
    Location location_;
    RunJournal journal_;
    std::vector<std::string> originals_;
};

}  // namespace marlok
