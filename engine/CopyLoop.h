#pragma once

#include <string>
#include <vector>

#include "engine/ChangeRule.h"
#include "engine/ChosenFile.h"
#include "engine/PlaceClaims.h"
#include "engine/RunPlan.h"
#include "engine/RunReport.h"
#include "engine/RunSink.h"
#include "engine/SavePlaces.h"
#include "engine/SavedFolder.h"
#include "engine/SourceMap.h"
#include "paths/Location.h"
#include "platform/Machine.h"

namespace marlok {

/// What the parts of a run work with. All of it outlives them.
struct RunTools {
    Machine& machine;
    const RunPlan& plan;
    SavePlaces& places;
    RunSink& sink;
    RunReport& report;
};

/// Decides file by file whether a source is to be written into a backup location. One object serves one location.
///
/// Two originals never share a saved copy: the one whose source comes first has it, the other one is reported.
class CopyLoop {
 public:
    /// `sources` are all sources of the location, `map` is theirs, `chosen` gets the files that are to be copied. All
    /// outlive this object.
    CopyLoop(const RunTools& tools, const Location& location, std::vector<ScannedSource>& sources, const SourceMap& map,
             PlaceClaims& claims, ChosenFiles& chosen);

    /// Goes through one source: the source itself, then every folder below it. Uses up what the scan has kept, unless
    /// the plan only looks.
    void BackupSource(std::size_t source);

 private:
    void BackupFile(std::size_t source);
    void BackupFolder(std::size_t source, std::size_t folder);
    [[nodiscard]] bool IsDone(std::size_t source, std::size_t folder, const SourceMap::Place& place, bool& contested);
    [[nodiscard]] bool IsPartOfFolder(std::size_t source, bool& contested);
    [[nodiscard]] SystemError ListFiles(ScannedFolder& folder, std::vector<DirectoryEntry>& entries);
    void BackupFolderFiles(const FolderWork& work, std::vector<DirectoryEntry>& entries, const SavedFolder& saved);
    void BackupThisFile(const FolderWork& work, const DirectoryEntry& entry);

    /// Applies the change rule: adds the file to `chosen`, or counts it as unchanged, different or failed.
    void Choose(const FolderWork& work, DirectoryEntry& entry, const SavedFolder::Found& saved,
                std::vector<ChosenFile>& chosen);
    void Decide(const FolderWork& work, const DirectoryEntry& entry, const ChosenFile& file,
                const DirectoryEntry& saved, std::vector<ChosenFile>& chosen);
    [[nodiscard]] std::string OtherOriginal(const std::string& source, const std::string& target);
    [[nodiscard]] bool ResolveLink(const std::string& source, DirectoryEntry& entry);

    /// Reports a file that is not saved, and counts it.
    void Refuse(const std::string& source, const std::string& reason);
    void Fail(const std::string& source, SystemError code);

    FileSystem& files_;
    const RunPlan& plan_;
    SavePlaces& places_;
    RunSink& sink_;
    RunReport& report_;
    Location location_;
    std::vector<ScannedSource>& sources_;
    const SourceMap& map_;
    PlaceClaims& claims_;
    ChosenFiles& chosen_;
    std::vector<SavePlaces::Rival> rivals_;
};

}  // namespace marlok
