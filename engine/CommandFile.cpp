#include "engine/CommandFile.h"

#include <algorithm>
#include <array>

#include "fileops/Deleting.h"
#include "fileops/Errors.h"
#include "fileops/FolderFunctions.h"
#include "fileops/WholeFiles.h"
#include "fileops/txtFunctions.h"
#include "paths/ProgramFiles.h"
#include "text/Lines.h"
#include "text/Text.h"

namespace marlok {

namespace {

/// Lines that never choose a location.
constexpr std::array<std::string_view, 11> passedOver{"S", "s", "A", "a", " ", "", "\r", "/", ",", ".", "\\"};

bool IsPassedOver(std::string_view line) {
    return std::ranges::find(passedOver, line) != passedOver.end();
}

bool IsLetter(std::string_view line) {
    constexpr std::string_view letters = "AaCcSs";
    return line.size() == 1 && letters.find(line.front()) != std::string_view::npos;
}

}  // namespace

RunLetters LettersOf(std::string_view text) {
    RunLetters letters;
    for (const std::string& line : text::SplitLines(text)) {
        if (line == "A" || line == "a") {
            letters.allFiles = true;
        } else if (line == "C" || line == "c") {
            letters.allFiles = false;
        } else if (line == "S" || line == "s") {
            letters.showMessage = true;
        }
    }
    return letters;
}

std::vector<std::string> LocationLinesOf(std::string_view text) {
    const std::vector<std::string> pieces = text::SplitLines(text);
    std::vector<std::string> lines;
    // What follows the last line end is no line.
    for (std::size_t i = 1; i + 1 < pieces.size(); ++i) {
        if (!IsPassedOver(pieces[i])) {
            lines.push_back(pieces[i]);
        }
    }
    return lines;
}

LocationChoice ChooseLocations(const std::vector<std::string>& lines, const std::vector<Location>& configured) {
    const auto holds = [](const Location& location, const std::string& line) {
        return text::ContainsIgnoringCase(location.Path(), line);
    };
    LocationChoice choice;
    for (const Location& location : configured) {
        const auto isHeld = [&](const std::string& line) { return holds(location, line); };
        if (lines.empty() || std::ranges::any_of(lines, isHeld)) {
            choice.chosen.push_back(location);
        }
    }
    for (const std::string& line : lines) {
        // A letter may stand behind the locations, and has told then what is to be copied.
        if (IsLetter(line) && !choice.chosen.empty()) {
            continue;
        }
        if (std::ranges::none_of(configured, [&](const Location& location) { return holds(location, line); })) {
            choice.withoutEffect.push_back(line);
        }
    }
    return choice;
}

std::string PassedOverFirstLine(std::string_view text) {
    const std::string first = text::SplitLines(text).front();
    return IsLetter(first) || IsPassedOver(first) ? "" : first;
}

CommandFile::CommandFile(Machine& machine)
    : machine_(machine), path_(ProgramFolder(machine.process.ProgramFolder()).PathOf(programfile::command)) {}

bool CommandFile::Exists() const {
    return FileExists(machine_.files, path_);
}

void CommandFile::Write(const std::vector<std::string>& lines) const {
    const SystemError code = SaveWholeFile(machine_.files, path_, text::JoinLines(lines));
    if (code != error::success) {
        Raise(machine_.system, code, path_);
    }
}

std::string CommandFile::Read() const {
    std::string text;
    const SystemError code = ReadText(machine_.files, machine_.system, path_, text);
    if (code != error::success) {
        Raise(machine_.system, code, path_);
    }
    return text;
}

void CommandFile::Remove() const {
    // One that stays harms nobody: it is written anew before it is read again.
    static_cast<void>(DeleteThisFile(machine_.files, path_));
}

}  // namespace marlok
