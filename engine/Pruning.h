#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "engine/RunReport.h"
#include "engine/SourceMap.h"
#include "paths/Location.h"
#include "platform/FileSystem.h"

namespace marlok {

/// What no source of a location has any more, found and not yet deleted.
struct Doomed {
    struct Item {
        std::string path;
        enum class Kind { file, link, folder } kind;
    };
    std::vector<Item> items;  ///< what lies in a folder before the folder itself
    std::uint64_t files = 0;
    std::uint64_t bytes = 0;
};

/// Finds what no source of a location has any more. Kept: what a source has, or might have by the volume's own rules
/// for names; folders in the location itself whose names begin with "."; working files; other locations that lie in it;
/// what the system keeps for itself in a drive's root; and everything that could not be looked at, which is reported.
class Pruning {
 public:
    /// All outlive the object. `keptBelow` are paths below the location that are left out with all they hold.
    Pruning(FileSystem& files, const Location& location, std::vector<ScannedSource>& sources, const SourceMap& map,
            const std::vector<std::string>& keptBelow, RunReport& report);

    /// `breathe` is called for each folder.
    [[nodiscard]] Doomed Find(const std::function<void()>& breathe);

 private:
    /// Names of files by their loose keys.
    using Names = std::unordered_multimap<std::string, std::string>;

    void Visit(const std::string& relative, Doomed& doomed);
    void TakeFolder(const std::string& relative, Doomed& doomed);
    [[nodiscard]] bool TakeTree(const std::string& relative, Doomed& doomed);
    [[nodiscard]] bool IsKept(const std::string& relative) const;
    [[nodiscard]] bool MayBeOnTheWay(const std::string& relative);
    [[nodiscard]] bool NamesOf(const std::string& relative, Names& names);
    [[nodiscard]] bool IsWanted(const std::string& relative, const std::string& name, const Names& names);

    FileSystem& files_;
    const Location& location_;
    std::vector<ScannedSource>& sources_;
    const SourceMap& map_;
    std::unordered_set<std::string> keptBelow_;  ///< folded
    RunReport& report_;
    std::function<void()> breathe_;
};

/// Deletes what was found, and nothing that has changed its kind since. What could not be deleted is added to `report`.
/// `goOn` is asked before each item.
void DeleteDoomed(FileSystem& files, const Doomed& doomed, RunReport& report, const std::function<bool()>& goOn);

}  // namespace marlok
