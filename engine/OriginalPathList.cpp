#include "engine/OriginalPathList.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "engine/PathLines.h"
#include "engine/PathLookup.h"
#include "fileops/Deleting.h"
#include "fileops/FolderFunctions.h"
#include "fileops/WholeFiles.h"
#include "fileops/txtFunctions.h"
#include "paths/Path.h"
#include "paths/Roots.h"
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

/// What `line` is called below its root, which is what its saved copy is called below the location; "" without a root.
std::string_view AfterRoot(std::string_view line) {
    switch (RootOf(line).kind) {
        case PathRoot::Kind::drive:
            return line.substr(RootOf(line).length);
        case PathRoot::Kind::network:
            return line.substr(2);
        default:
            return "";
    }
}

/// For each name the lines, by their numbers in ascending order, that are a root and that name, letter case ignored.
std::vector<std::vector<std::size_t>> LinesCalled(const std::vector<std::string>& lines,
                                                  const std::vector<std::string>& names) {
    std::unordered_map<std::string, std::vector<std::size_t>> byName;
    for (const std::string& name : names) {
        byName.try_emplace(text::Fold(name));
    }
    for (std::size_t line = 0; line < lines.size(); ++line) {
        const std::string_view after = AfterRoot(lines[line]);
        const auto found = byName.find(text::Fold(after));
        if (!after.empty() && found != byName.end()) {
            found->second.push_back(line);
        }
    }
    std::vector<std::vector<std::size_t>> called;
    called.reserve(names.size());
    for (const std::string& name : names) {
        called.push_back(byName.at(text::Fold(name)));
    }
    return called;
}

/// What these lines, all of them a root and `name`, say. Lines that differ in letter case alone are of one file; of a
/// file that is listed in another letter case only, they say nothing.
FoundOriginal OriginalOf(const std::vector<std::string>& lines, const std::vector<std::size_t>& called,
                         const std::string& name) {
    FoundOriginal found;
    for (const std::size_t line : called) {
        const bool known = std::ranges::any_of(
            found.paths, [&](const std::string& path) { return text::EqualIgnoringCase(path, lines[line]); });
        if (!known) {
            found.paths.push_back(lines[line]);
        }
    }
    if (found.paths.size() > 1) {
        found.kind = FoundOriginal::Kind::several;
        return found;
    }
    const auto exact = std::ranges::find_if(called, [&](std::size_t line) { return AfterRoot(lines[line]) == name; });
    if (exact == called.end()) {
        return {};
    }
    return {FoundOriginal::Kind::one, {lines[*exact]}};
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
    code_ = ReadPathLines(machine_.files, machine_.system, path_, text_);
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

std::vector<FoundOriginal> OriginalPathList::FindAll(const std::vector<std::string>& names) const {
    const std::vector<std::string> lines = Lines();
    const std::vector<std::vector<std::size_t>> called = LinesCalled(lines, names);
    const std::vector<std::size_t> places = FirstOccurrences(text_, names);
    std::vector<FoundOriginal> originals;
    originals.reserve(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        originals.push_back(OriginalOf(lines, called[i], names[i]));
        if (originals.back().kind == FoundOriginal::Kind::notListed && places[i] != notFound) {
            originals.back() = {FoundOriginal::Kind::one, {OriginalPathAt(text_, places[i], names[i])}};
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
    return SaveWholeFile(machine_.files, path_, EncodePathLines(text_));
}

void OriginalPathList::RemoveFirst(const std::vector<std::string>& names, const LineRule& mayGo) {
    const std::vector<std::string> lines = Lines();
    const std::vector<std::vector<std::size_t>> called = LinesCalled(lines, names);
    const std::vector<std::vector<std::size_t>> containing =
        LinesContaining(text::Fold(text::JoinLines(lines)), Folded(names));
    std::vector<bool> removed(lines.size(), false);
    const auto removeOneOf = [&](const std::vector<std::size_t>& numbers) {
        const auto first =
            std::ranges::find_if(numbers, [&](std::size_t line) { return !removed[line] && mayGo(lines[line]); });
        if (first != numbers.end()) {
            removed[*first] = true;
        }
    };
    for (std::size_t i = 0; i < names.size(); ++i) {
        removeOneOf(called[i].empty() ? containing[i] : called[i]);
    }
    std::vector<std::string> kept;
    for (std::size_t line = 0; line < lines.size(); ++line) {
        if (!removed[line]) {
            kept.push_back(lines[line]);
        }
    }
    SetLines(kept);
}

void OriginalPathList::RemoveBelow(const std::vector<std::string>& paths, const LineRule& mayGo) {
    std::vector<std::string> starts;  // with "\" at their ends: whole components are compared
    starts.reserve(paths.size());
    for (const std::string& path : paths) {
        starts.push_back(text::Fold(AddBackslash(path)));
    }
    std::vector<std::string> lines = Lines();
    std::erase_if(lines, [&](const std::string& line) {
        const std::string here = text::Fold(AddBackslash(line));
        return std::ranges::any_of(starts, [&](const std::string& start) { return here.starts_with(start); }) &&
               mayGo(line);
    });
    SetLines(lines);
}

void OriginalPathList::SetLines(const std::vector<std::string>& lines) {
    text_ = text::JoinLines(lines);
}

SystemError OriginalPathList::Save(NothingLeft nothingLeft) {
    if (!text_.empty()) {
        return SaveWholeFile(machine_.files, path_, EncodePathLines(text_));
    }
    if (nothingLeft == NothingLeft::keepsTheOldList) {
        return error::success;
    }
    const SystemError code = ForceDelete(machine_.files, path_);
    return IsMissing(code) ? error::success : code;
}

}  // namespace marlok
