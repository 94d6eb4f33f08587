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
    /// The backup location that is being written, with links resolved; folders at or below it are left out, or each run
    /// would nest the last one deeper. "" when nothing is left out.
    std::string locationFinalPath;

    /// How many file entries may be kept, about 150 bytes each; what is over is listed again.
    std::size_t entriesKept = 200'000;

    /// Called for each folder that was listed; may be empty.
    std::function<void()> meanwhile;
};

/// What a scan has found.
struct FolderScan {
    /// The folder scanned, then every folder below it: pre-order, siblings in the order of the file system.
    std::vector<ScannedFolder> folders;

    /// Folders that the scan did not see although they are there, with links that were not descended left out.
    std::vector<std::string> missed;

    /// Folders that could not be listed to their end, and why: folders below them may be missing from the scan.
    struct Unlisted {
        std::string path;
        SystemError code;
    };
    std::vector<Unlisted> unlisted;
};

/// Finds every folder at or below `root`, and the files in them.
///
/// The first entry of every listing is accepted unchecked. In an ordinary folder it is "."; at a drive's root it is an
/// entry like any other, and if that is a folder it is not scanned: deliberate, and told in `missed`.
///
/// A link to a folder above itself, or round and round through several links, is left out; other links are descended.
/// @throws RuntimeError 6 when a folder has more than 32,767 folders directly in it.
[[nodiscard]] FolderScan ScanFolders(FileSystem& files, const std::string& root, const ScanOptions& options);

/// `text` up to its first zero character.
[[nodiscard]] std::string TrimAtNull(std::string_view text);

}  // namespace marlok
