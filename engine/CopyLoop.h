#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "engine/ChangeRule.h"
#include "engine/RunJournal.h"
#include "engine/RunPlan.h"
#include "engine/RunReport.h"
#include "engine/RunSink.h"
#include "engine/SavePlaces.h"
#include "engine/SavedFolder.h"
#include "engine/SourceMap.h"
#include "paths/Location.h"
#include "platform/Machine.h"
#include "platform/Volume.h"

namespace marlok {

/// What the parts of a run work with. All of it outlives them.
struct RunTools {
    Machine& machine;
    const RunPlan& plan;
    SavePlaces& places;
    RunSink& sink;
    RunReport& report;
};

/// Decides file by file whether a source is written into a backup location, writes it and records what was written. One
/// object serves one location.
///
/// A saved copy is never torn: where one exists, the new copy is written beside it and takes its place when it is
/// whole; where none exists the copy goes straight to its place, under the run's journal. A copy that fails is reported
/// and not listed. Two originals never share a saved copy: the one whose source comes first has it, the other one is
/// reported.
class CopyLoop {
 public:
    /// `sources` are all sources of the location, `map` is theirs; both outlive this object, and so does `journal`.
    CopyLoop(const RunTools& tools, const Location& location, RunJournal& journal, std::vector<ScannedSource>& sources,
             const SourceMap& map);

    /// Sources that are found unchanged are to be listed too: the list of original paths has been lost.
    void ListUnchanged() { listsUnchanged_ = true; }

    /// Backs up one source: the source itself, then every folder below it. Uses up what the scan has kept.
    void BackupSource(std::size_t source);

    /// The sources that were copied and are not listed yet, in their order; handed over once.
    [[nodiscard]] std::vector<std::string> TakeOriginals() { return std::exchange(originals_, {}); }

    /// True when another run has been found at work in the location: nothing more is written there.
    [[nodiscard]] bool Abandoned() const { return abandoned_; }

 private:
    /// A file that the change rule has chosen.
    struct Chosen {
        std::uint64_t size;
        FileTime time;
        std::string source;
        std::string target;
        bool replaces;
    };

    /// A folder, or a single file, that is being worked on.
    struct Work {
        const ScannedSource& source;
        std::string from;    ///< the folder
        std::string target;  ///< where its files go
        bool contested;      ///< files of other originals go there too
    };

    void BackupFile(std::size_t source);
    void BackupFolder(std::size_t source, std::size_t folder);
    [[nodiscard]] bool IsDone(std::size_t source, std::size_t folder, const SourceMap::Place& place, bool& contested);
    [[nodiscard]] bool IsPartOfFolder(std::size_t source, bool& contested);
    [[nodiscard]] SystemError ListFiles(ScannedFolder& folder, std::vector<DirectoryEntry>& entries);
    [[nodiscard]] bool BeginWriting();
    [[nodiscard]] SystemError MakeTargetFolders(const std::string& folder, SavedFolder& saved);
    void BackupFolderFiles(const Work& work, std::vector<DirectoryEntry>& entries, const SavedFolder& saved);
    void BackupThisFile(const Work& work, const DirectoryEntry& entry);

    /// Applies the change rule: adds the file to `chosen`, or counts it as unchanged, different or failed.
    void Choose(const Work& work, DirectoryEntry& entry, const SavedFolder::Found& saved, std::vector<Chosen>& chosen);
    void Decide(const Work& work, const DirectoryEntry& entry, const Chosen& file, const DirectoryEntry& saved,
                std::vector<Chosen>& chosen);
    [[nodiscard]] std::string WhyTaken(const Work& work, const Chosen& file, const SavedFolder::Found& saved);
    [[nodiscard]] std::string OtherOriginal(const std::string& source, const std::string& target);
    [[nodiscard]] std::string EarlierOriginal(const Work& work, const Chosen& file);
    [[nodiscard]] std::vector<std::string> ClaimKeys(const Work& work, const std::string& target);
    void Claim(const Work& work, const std::string& source, const std::string& target);

    void CopyAll(const Work& work, const std::vector<Chosen>& chosen);
    void CopyAndAccount(const Work& work, const Chosen& file, bool recorded);
    [[nodiscard]] bool RecordGroup(std::span<const Chosen> group);
    [[nodiscard]] SystemError CopyFile(const std::string& source, const std::string& target, std::uint32_t flags);
    [[nodiscard]] SystemError CopyBytes(const std::string& source, const std::string& target, std::uint32_t flags);
    [[nodiscard]] SystemError CopyOne(const Work& work, const Chosen& file, bool recorded, std::string& taken);
    [[nodiscard]] SystemError CopyStraight(const Chosen& file);
    [[nodiscard]] SystemError CopyBeside(const Chosen& file);
    [[nodiscard]] JournalEntry AsJournalEntry(const Chosen& file) const;
    [[nodiscard]] bool ResolveLink(const std::string& source, DirectoryEntry& entry);

    /// Reports a file that is not saved, and counts it.
    void Refuse(const std::string& source, const std::string& reason);
    void Fail(const Chosen& file, SystemError code);
    void CountFailed(const std::string& source);

    Machine& machine_;
    FileSystem& files_;
    const RunPlan& plan_;
    SavePlaces& places_;
    RunSink& sink_;
    RunReport& report_;
    Location location_;
    RunJournal& journal_;
    std::vector<ScannedSource>& sources_;
    const SourceMap& map_;
    std::vector<SavePlaces::Rival> rivals_;
    Volume volume_;  ///< that the location lies on
    std::vector<std::string> originals_;
    std::map<std::string, std::string> claims_;  ///< contested places, see ClaimKeys, and whose they are
    bool listsUnchanged_ = false;
    bool abandoned_ = false;
};

}  // namespace marlok
