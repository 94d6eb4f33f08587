#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/FileSystem.h"

namespace marlok {

/// What a file search is told and what it tells.
struct SearchSpec {
    bool listFolders = false;      ///< whether the folders met are listed too
    std::int32_t fileCount = 0;    ///< files found, added to what stands here
    std::int32_t folderCount = 0;  ///< likewise folders
    std::string pattern = "*.*";   ///< names of files to find; "*.*" is every name
    std::string folder;            ///< where to search, with "\" at its end
};

/// A folder that could not be listed to its end, and why.
struct BrokenListing {
    std::string folder;  ///< without "\" at its end unless it is a root
    SystemError code = error::success;
};

/// The folders that a search has met, in its order.
struct FoundFolders {
    std::vector<std::string> paths;
    std::vector<bool> holdsFiles;  ///< at any depth; true also for what could not be listed, and for links

    /// Where the search found less than is there: the folder searched itself when that could not be listed.
    std::vector<BrokenListing> broken;
};

/// What a search tells, and asks, while it goes on.
struct SearchSink {
    std::function<void(std::string path)> found;  ///< a file, by its full path; may be empty
    std::function<bool()> goOn;                   ///< asked at each entry: false ends the search; may be empty
};

/// Finds every file at any depth below a folder, in the order in which the file system lists entries, each folder being
/// entered as it is met. Returns the folders, when they are to be listed. Left out: the program's working files, what
/// lies behind folder links, which is not in the folder, and the system's own folders in the root of a drive. A folder
/// that cannot be listed counts as one without files for the counts, as one with files in `holdsFiles`, and is in
/// `broken`.
[[nodiscard]] FoundFolders SearchFiles(FileSystem& files, SearchSpec& spec, const SearchSink& sink);

}  // namespace marlok
