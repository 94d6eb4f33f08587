#include "engine/SourceCopies.h"

#include "engine/OriginalPathList.h"
#include "fileops/Deleting.h"
#include "fileops/Errors.h"
#include "fileops/Whereabouts.h"
#include "fileops/txtFunctions.h"
#include "paths/Names.h"
#include "paths/Path.h"
#include "paths/Roots.h"

namespace marlok {

namespace {

/// The path after the drive root; "" for what is no path of a source.
std::string RelativePath(const std::string& source) {
    const PathRoot root = RootOf(source);
    switch (root.kind) {
        case PathRoot::Kind::drive:
            return source.substr(root.length);
        case PathRoot::Kind::network:
            return source;
        default:
            return "";
    }
}

}  // namespace

void SourceCopies::Delete(const std::string& source, RunReport& report) const {
    FileSystem& files = machine_.files;
    const std::string relative = RelativePath(source);
    const std::string saved = WithoutBackslash(location_.SavedPathOf(source));
    if (!IsPlainRelativePath(relative) || Components(relative).empty()) {
        // A whole drive is saved straight into the location: deleting "its folder" would delete all other sources' too.
        report.Add(source, "Has No Folder Of Its Own In The Backup Location, Nothing Was Deleted");
        return;
    }
    DirectoryEntry entry;
    const SystemError looked = files.GetEntry(saved, entry);
    if (IsMissing(looked)) {
        return;
    }
    if (looked != error::success) {
        report.Add(saved, looked);
        return;
    }
    if (!HasThreeLetterExtension(source) && !entry.IsFolder()) {
        return;  // a source without such a name is a folder; the file of that name is none of its copies
    }
    // The folder it lies in may be a link out of the location; the saved copy itself, being one, goes without its
    // target.
    if (!IsSurelyInside(files, FolderOf(saved), location_.Path())) {
        report.Add(saved, "A link leads out of the backup location.");
        return;
    }
    const SystemError code = DeleteWhole(files, saved);
    if (code != error::success) {
        report.Add(saved, code);
    }
}

std::vector<std::string> SourceCopies::TakeOffList(const std::vector<std::string>& sources, RunReport& report) const {
    OriginalPathList list(machine_, location_);
    switch (list.Load()) {
        case OriginalPathList::State::missing:
            return {};
        case OriginalPathList::State::unreadable:
            report.Add(list.Path(), list.Code());
            return {};
        case OriginalPathList::State::read:
            break;
    }
    list.RemoveContaining(sources);
    const SystemError code = list.Save(OriginalPathList::NothingLeft::keepsTheOldList);
    if (code != error::success) {
        report.Add(list.Path(), code);
    }
    return list.Lines();
}

}  // namespace marlok
