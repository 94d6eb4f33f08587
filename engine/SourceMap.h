#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "engine/ChangeRule.h"
#include "fileops/FolderScan.h"
#include "fileops/Whereabouts.h"
#include "paths/Location.h"

namespace marlok {

/// A source of a location, as it was found when the run began.
struct ScannedSource {
    std::string path;      ///< as it is configured, without "\" at its end
    bool isFile = false;   ///< a single file; `scan` is empty then
    DirectoryEntry entry;  ///< of a single file
    FolderScan scan;       ///< of a folder
    TimeKeeping times;
};

/// Which folders of a location the sources are saved in, and what else is. Two names that some volume may take for one
/// share a place here: what is looked up is a candidate, and the volume decides.
class SourceMap {
 public:
    /// A folder of a source: `sources[source].scan.folders[folder]`.
    struct FolderRef {
        std::size_t source;
        std::size_t folder;
    };

    /// What is saved in one folder of the location.
    struct Place {
        std::vector<FolderRef> folders;  ///< those whose files go there
        std::vector<std::size_t> files;  ///< single files that go there
    };

    /// `sources` outlives this object.
    SourceMap(const Location& location, const std::vector<ScannedSource>& sources);

    /// What may be saved in the folder at this path below the location; null for nothing.
    [[nodiscard]] const Place* At(const std::string& folder) const;

    /// True when a folder that is saved in, or holds one that is, may bear this path below the location.
    [[nodiscard]] bool IsOnTheWay(const std::string& folder) const;

    /// The paths below the location that share this one's place in the map, in the spelling of their sources.
    [[nodiscard]] std::vector<std::string> SpellingsAt(const std::string& folder) const;

 private:
    void AddWay(std::string folder);

    std::unordered_map<std::string, Place> places_;
    std::unordered_map<std::string, std::vector<std::string>> ways_;
};

/// Two names that no volume takes for one have different keys; two names with one key may be the same.
[[nodiscard]] std::string LooseKey(const std::string& path);

}  // namespace marlok
