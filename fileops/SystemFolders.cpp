#include "fileops/SystemFolders.h"

#include <algorithm>
#include <array>

#include "paths/Path.h"
#include "paths/Roots.h"
#include "text/Text.h"

namespace marlok {

namespace {

/// Told by their names, because a drive that another machine shares, or that was formatted elsewhere, may show them
/// with any attributes.
constexpr std::array<std::string_view, 3> systemFolders{"$RECYCLE.BIN", "RECYCLER", "System Volume Information"};

}  // namespace

bool IsSystemFolderOfRoot(const DirectoryEntry& entry, std::string_view folder) {
    if (!entry.IsFolder() || !IsRoot(AddBackslash(folder))) {
        return false;
    }
    constexpr std::uint32_t protectedBits = attribute::hidden | attribute::system;
    return (entry.attributes & protectedBits) == protectedBits ||
           std::ranges::any_of(systemFolders,
                               [&entry](std::string_view name) { return text::EqualIgnoringCase(name, entry.name); });
}

bool LiesInSystemFolderOfRoot(FileSystem& files, const std::string& path) {
    for (const std::string& folder : FoldersOnTheWay(path)) {
        if (!IsRoot(folder)) {
            DirectoryEntry entry;
            const SystemError code = files.GetEntry(folder, entry);
            entry.name = FileNameOf(folder);
            return code == error::success && IsSystemFolderOfRoot(entry, FolderAbove(folder));
        }
    }
    return false;
}

}  // namespace marlok
