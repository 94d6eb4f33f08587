#include "engine/OriginalPathList.h"

#include <algorithm>

#include "engine/PathLookup.h"
#include "fileops/Deleting.h"
#include "fileops/FolderFunctions.h"
#include "fileops/WholeFiles.h"
#include "fileops/txtFunctions.h"
#include "paths/Path.h"
#include "text/Lines.h"
#include "text/Text.h"

namespace marlok {

namespace {

/// How far into a list of original paths its first drive root is searched for, in characters.
constexpr std::size_t rootSearchLength = 200;

std::vector<std::string> Folded(const std::vector<std::string>& texts) {
    std::vector<std::string> folded;
    folded.reserve(texts.size());
    for (const std::string& text : texts) {
        folded.push_back(text::Fold(text));
    }
    return folded;
}

}  // namespace

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

std::string OriginalPathAt(std::string_view text, std::size_t place, const std::string& name) {
    const std::string_view start = text::Left(text, rootSearchLength + 1);
    const std::size_t root = start.find(":\\");
    if (root == std::string_view::npos) {
        return "";
    }
    // The drive letter, its colon and its backslash, when the root stands at the start of a line.
    const std::size_t rootLength = text::CharacterCount(start.substr(0, root)) + 2;
    const std::string_view before = text::Right(text.substr(0, place), rootLength);
    if (text::CharacterCount(before) < rootLength) {
        return "";
    }
    return std::string(before) + name;
}

std::string FindOriginalPath(std::string_view text, const std::string& name, bool& gSearchOn) {
    const std::size_t found = text.find(name);
    if (found == std::string_view::npos) {
        gSearchOn = false;
        return "";
    }
    return OriginalPathAt(text, found, name);
}

OriginalPathList::OriginalPathList(Machine& machine, const Location& location)
    : OriginalPathList(machine, location.OriginalList(ProgramFolder(machine.process.ProgramFolder()))) {}

OriginalPathList::State OriginalPathList::Load() {
    code_ = ReadText(machine_.files, machine_.system, path_, text_);
    if (code_ == error::success) {
        return State::read;
    }
    if (!IsMissing(code_)) {
        return State::unreadable;
    }
    code_ = error::success;
    return State::missing;
}

std::vector<std::string> OriginalPathList::Lines() const {
    std::vector<std::string> lines = text::SplitLines(text_);
    std::erase(lines, "");
    return lines;
}

std::vector<std::optional<std::string>> OriginalPathList::FindAll(const std::vector<std::string>& names) const {
    std::vector<std::optional<std::string>> originals(names.size());
    const std::vector<std::size_t> places = FirstOccurrences(text_, names);
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (places[i] != notFound) {
            originals[i] = OriginalPathAt(text_, places[i], names[i]);
        }
    }
    return originals;
}

SystemError OriginalPathList::Add(const std::vector<std::string>& originals) {
    const State state = Load();
    if (state == State::unreadable) {
        return code_;
    }
    if (state == State::missing && !CreateNestedFolders(machine_.files, machine_.process, FolderOf(path_))) {
        return error::pathNotFound;
    }
    std::string added;
    for (const std::string_view line : NotOccurring(text_, originals)) {
        added.append(line).append("\r\n");
    }
    if (state == State::read && added.empty()) {
        ClearUnfinishedSave(machine_.files, path_);
        return error::success;
    }
    // A list that was cut short, or written by hand, may lack its last line's end.
    if (!text_.empty() && text_.back() != '\n') {
        text_ += "\r\n";
    }
    text_ += added;
    return SaveWholeFile(machine_.files, path_, text_);
}

void OriginalPathList::RemoveFirstContaining(const std::vector<std::string>& names) {
    const std::vector<std::string> lines = Lines();
    std::vector<bool> removed(lines.size(), false);
    for (const std::vector<std::size_t>& containing :
         LinesContaining(text::Fold(text::JoinLines(lines)), Folded(names))) {
        const auto first = std::ranges::find_if(containing, [&](std::size_t line) { return !removed[line]; });
        if (first != containing.end()) {
            removed[*first] = true;
        }
    }
    std::vector<std::string> kept;
    for (std::size_t line = 0; line < lines.size(); ++line) {
        if (!removed[line]) {
            kept.push_back(lines[line]);
        }
    }
    SetLines(kept);
}

void OriginalPathList::RemoveContaining(const std::vector<std::string>& paths) {
    std::vector<std::string> lines = Lines();
    const std::vector<std::string> folded = Folded(paths);
    std::erase_if(lines, [&folded](const std::string& line) {
        const std::string here = text::Fold(line);
        return std::ranges::any_of(folded,
                                   [&](const std::string& path) { return here.find(path) != std::string::npos; });
    });
    SetLines(lines);
}

void OriginalPathList::SetLines(const std::vector<std::string>& lines) {
    text_ = text::JoinLines(lines);
}

SystemError OriginalPathList::Save(NothingLeft nothingLeft) {
    if (!text_.empty()) {
        return SaveWholeFile(machine_.files, path_, text_);
    }
    if (nothingLeft == NothingLeft::keepsTheOldList) {
        return error::success;
    }
    const SystemError code = ForceDelete(machine_.files, path_);
    return IsMissing(code) ? error::success : code;
}

}  // namespace marlok
