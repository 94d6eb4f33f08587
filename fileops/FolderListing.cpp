#include "fileops/FolderListing.h"

#include <memory>

#include "paths/Path.h"

namespace marlok {

SystemError ListFolder(FileSystem& files, const std::string& folder, const EntryVisitor& visit) {
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    SystemError code = files.FindFirst(Join(folder, "*"), search, entry);
    if (code == error::fileNotFound) {
        return error::success;  // not even "." matches: the root of an empty drive
    }
    while (code == error::success) {
        if (entry.name != "." && entry.name != ".." && !visit(entry)) {
            return error::success;
        }
        entry = DirectoryEntry();
        code = search->Next(entry);
    }
    return code == error::noMoreFiles ? error::success : code;
}

}  // namespace marlok
