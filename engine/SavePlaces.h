#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "engine/Program.h"

namespace marlok {

/// Where things lie, with links, aliases and substituted drives resolved as far as the path exists.
[[nodiscard]] std::string ResolvedPath(FileSystem& files, const std::string& path);

/// True when `path` is `folder` or lies below it, whatever paths they are named by.
[[nodiscard]] bool IsInside(FileSystem& files, const std::string& path, const std::string& folder);

/// True when `path` lies in `folder` for certain: where links, aliases and substituted drives lead decides, not how the
/// paths are written. False when the system does not tell.
[[nodiscard]] bool IsSurelyInside(FileSystem& files, const std::string& path, const std::string& folder);

/// What a run must not touch in a backup location: sources, the program, Windows, the program's own files.
class SavePlaces {
 public:
    /// Reads the configuration once: all locations and all their sources.
    explicit SavePlaces(Program& program);

    /// Why the location must not be emptied before everything is copied into it; "" when it may be. Never: a location
    /// at or above a source of any location, the program folder, the Windows folder, or a list of original paths. And
    /// not while one of the location's own sources is missing: its saved copies may be the only ones. What cannot be
    /// found out counts against emptying.
    [[nodiscard]] std::string WhyNotEmptied(const std::string& location) const;

    /// Tells where the copies that follow are written.
    void EnterLocation(const std::string& location);

    /// True when a file may be saved as `target`: it does not bear the name of a working file, and it is neither a file
    /// of the program nor a list of original paths.
    [[nodiscard]] bool MaySave(const std::string& target) const;

 private:
    struct Source {
        std::string location;
        std::string path;

        friend bool operator==(const Source&, const Source&) = default;
    };

    [[nodiscard]] static std::vector<Source> ReadSources(Program& program);

    Program& program_;
    std::vector<Source> sources_;
    bool settingsRead_ = false;
    std::vector<std::string> lists_;
    std::unordered_set<std::string> ownFiles_;  ///< folded, resolved
    std::string location_;
    std::string resolvedLocation_;
    bool nearProgram_ = false;
};

}  // namespace marlok
