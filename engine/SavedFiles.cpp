#include "engine/SavedFiles.h"

#include "engine/OriginalPathList.h"
#include "fileops/Deleting.h"
#include "fileops/Errors.h"
#include "fileops/WholeFiles.h"
#include "fileops/txtFunctions.h"
#include "paths/ProgramFiles.h"
#include "text/Lines.h"

namespace marlok {

FoundFolders SavedFiles::List(SearchSpec& spec, const SearchSink& sink) const {
    spec = {true, 0, 0, "*.*", location_.Below("")};
    return SearchFiles(machine_.files, spec, sink);
}

std::vector<std::string> SavedFiles::Delete(const std::vector<std::string>& paths, RunReport& report,
                                            const std::function<void()>& meanwhile) const {
    std::vector<std::string> chosen;
    for (const std::string& path : paths) {
        if (location_.RelativeNameOf(path).empty()) {
            continue;  // the line that says that there are no files is none
        }
        chosen.push_back(path);
        const SystemError code = DeleteWhole(machine_.files, path);
        if (code != error::success && !IsMissing(code)) {
            report.Add(path, "not deleted: " + Describe(machine_.system, code));
        }
        meanwhile();
    }
    return chosen;
}

void SavedFiles::TakeOffList(const std::vector<std::string>& deleted, RunReport& report) const {
    OriginalPathList list(machine_, location_);
    switch (list.Load()) {
        case OriginalPathList::State::missing:
            return;
        case OriginalPathList::State::unreadable:
            report.Add(list.Path(), list.Code());
            return;
        case OriginalPathList::State::read:
            break;
    }
    std::vector<std::string> names;
    names.reserve(deleted.size());
    for (const std::string& path : deleted) {
        names.push_back(location_.RelativeNameOf(path));
    }
    list.RemoveFirstContaining(names);
    const SystemError code = list.Save(OriginalPathList::NothingLeft::removesTheFile);
    if (code != error::success) {
        report.Add(list.Path(), code);
    }
}

void SavedFiles::QueueFolders(const std::vector<std::string>& folders, RunReport& report) const {
    const std::string path = ProgramFolder(machine_.process.ProgramFolder()).PathOf(programfile::deleteFolder);
    const SystemError code = SaveWholeFile(machine_.files, path, text::JoinLines(folders));
    if (code != error::success) {
        report.Add(path, code);
    }
}

}  // namespace marlok
