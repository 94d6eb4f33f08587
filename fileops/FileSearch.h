#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "forms/Controls.h"
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

/// The folders that a search has met, in its order.
struct FoundFolders {
    std::vector<std::string> paths;
    std::vector<bool> holdsFiles;  ///< at any depth; true also for what could not be listed, and for links
};

/// Finds every file at any depth below a folder, in the order in which the file system lists entries, each folder being
/// entered as it is met. Full paths of files are added to `fileList`; folders to `folders`, when they are to be listed;
/// either may be null. Stops at the next entry when `gSearchOn` is false. Left out: the program's working files, and
/// what lies behind folder links, which is not in the folder. A folder that cannot be listed counts as empty.
/// `meanwhile`, when it is not empty, is called for each entry.
void SearchFiles(FileSystem& files, SearchSpec& spec, forms::ListBox* fileList, FoundFolders* folders,
                 const bool& gSearchOn, const std::function<void()>& meanwhile = {});

}  // namespace marlok
