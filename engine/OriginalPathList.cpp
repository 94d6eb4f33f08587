#include "engine/OriginalPathList.h"

#include "engine/PathLookup.h"
#include "fileops/FolderFunctions.h"
#include "fileops/txtFunctions.h"

namespace marlok {

std::vector<std::string_view> NotOccurring(std::string_view text, const std::vector<std::string>& items) {
    const std::vector<std::size_t> places = FirstOccurrences(text, items);
    std::vector<std::string_view> missing;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (places[i] == notFound && !items[i].empty()) {
            missing.push_back(items[i]);
        }
    }
    return missing;
}

SystemError AddToOriginalList(Program& program, const std::string& listPath,
                              const std::vector<std::string>& originals) {
    Machine& machine = program.machine;
    DirectoryEntry entry;
    const SystemError looked = machine.files.GetEntry(listPath, entry);
    const bool exists = looked == error::success;
    if (!exists && looked != error::fileNotFound && looked != error::pathNotFound) {
        return looked;  // a list that cannot be seen may be there all the same
    }
    std::string bytes;
    if (exists) {
        const SystemError code = ReadWholeFile(machine.files, listPath, bytes);
        if (code != error::success) {
            return code;
        }
    } else if (!CreateNestedFolders(machine.files, machine.process, FolderOf(listPath))) {
        return error::pathNotFound;
    }
    std::string list = DecodeText(machine.system, std::move(bytes));
    std::string added;
    for (const std::string_view line : NotOccurring(list, originals)) {
        added.append(line).append("\r\n");
    }
    if (exists && added.empty()) {
        ClearUnfinishedSave(machine.files, listPath);
        return error::success;
    }
    // A list that was cut short, or written by hand, may lack its last line's end.
    if (!list.empty() && list.back() != '\n') {
        list += "\r\n";
    }
    return SaveWholeFile(machine.files, listPath, list + added);
}

}  // namespace marlok
