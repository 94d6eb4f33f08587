#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FileSystem.h"

namespace marlok {

/// A folder that a scan has met.
struct ScannedFolder {
    static constexpr std::size_t noParent = static_cast<std::size_t>(-1);

    std::string path;               ///< full path, without trailing "\" unless it is a drive's root
    std::size_t parent = noParent;  ///< index of the folder that it lies in, `noParent` for the one scanned
    std::size_t nameLength = 0;     ///< bytes of its name, the end of `path`; for the one scanned all of it

    /// The files directly in it, in the order of the file system: listing a folder is most of the cost of finding that
    /// nothing has changed. Empty where the listing did not come to its end, and where the scan had no room to keep
    /// them: then they are to be listed again.
    std::optional<std::vector<DirectoryEntry>> files;

    [[nodiscard]] std::string_view Name() const { return std::string_view(path).substr(path.size() - nameLength); }
};

/// How a folder scan is run.
struct ScanOptions {
    /// Folders, with links resolved, that are left out with all that lies below them: backup locations, or each run
    /// would nest the last one deeper.
    std::vector<std::string> leftOut;

    /// How many file entries may be kept, about 150 bytes each; what is over is listed again.
    std::size_t entriesKept = 200'000;

    /// Called for each folder that was listed; may be empty.
    std::function<void()> meanwhile;
};

/// What a scan has found.
struct FolderScan {
    /// The folder scanned, then every folder below it: pre-order, siblings in the order of the file system.
    std::vector<ScannedFolder> folders;

    /// Folders that could not be listed to their end, and why: folders below them may be missing from the scan. Links
    /// that the system itself hides and lets nobody list are not among them: there is nothing to save behind them that
    /// does not lie elsewhere.
    struct Unlisted {
        std::string path;
        SystemError code;
    };
    std::vector<Unlisted> unlisted;
};

/// Finds every folder at or below `root`, and the files in them.
///
/// Folders that the system keeps for itself in a drive's root are left out. A link to a folder above itself, or round
/// and round through several links, is left out; other links are descended.
[[nodiscard]] FolderScan ScanFolders(FileSystem& files, const std::string& root, const ScanOptions& options);

/// `text` up to its first zero character.
[[nodiscard]] std::string TrimAtNull(std::string_view text);

}  // namespace marlok
