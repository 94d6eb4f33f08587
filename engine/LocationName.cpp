#include "engine/LocationName.h"

#include <algorithm>
#include <array>
#include <vector>

#include "fileops/FolderFunctions.h"
#include "fileops/WorkingFiles.h"
#include "text/Text.h"

namespace marlok {

namespace {

constexpr std::array ownFiles{
    programfile::program,   programfile::command,     programfile::deleteFolder,  programfile::runLog,
    programfile::errorLog,  programfile::replacedLog, programfile::restartSource, programfile::restartProgram,
    programfile::animation, programfile::help,
};

constexpr std::array<std::string_view, 6> deviceNames{"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};

constexpr std::size_t longestAliasBase = 8;

/// The file system takes a name with blanks or dots at its end for the name without them.
std::string_view AsTaken(std::string_view component) {
    const std::size_t end = component.find_last_not_of(". ");
    return end == std::string_view::npos ? component : component.substr(0, end + 1);
}

bool IsOwnFile(std::string_view name) {
    return std::ranges::any_of(ownFiles, [&](const char* own) { return text::EqualIgnoringCase(own, name); }) ||
           workingfile::IsWorkingFile(name);
}

/// True for what looks like the alias of a longer name ("DELETE~1"): the alias of one of our files could bear it.
bool LooksLikeAlias(std::string_view component) {
    const std::string_view base = component.substr(0, component.find('.'));
    const std::size_t tilde = base.rfind('~');
    return base.size() <= longestAliasBase && tilde != std::string_view::npos && tilde > 0 && tilde + 1 < base.size() &&
           base.find_first_not_of("0123456789", tilde + 1) == std::string_view::npos;
}

bool IsNumberedDevice(std::string_view base) {
    const std::string_view word = base.substr(0, 3);
    const std::string_view number = base.substr(std::min<std::size_t>(3, base.size()));
    const bool numbered = (number.size() == 1 && number[0] >= '0' && number[0] <= '9') || number == "\u00B9" ||
                          number == "\u00B2" || number == "\u00B3";
    return numbered && (text::EqualIgnoringCase(word, "COM") || text::EqualIgnoringCase(word, "LPT"));
}

bool IsDevice(std::string_view component) {
    const std::string_view base = text::Trim(component.substr(0, component.find('.')), " ");
    return IsNumberedDevice(base) || std::ranges::any_of(deviceNames, [&](std::string_view device) {
               return text::EqualIgnoringCase(device, base);
           });
}

std::vector<std::string_view> Components(std::string_view path) {
    std::vector<std::string_view> components = text::Split(path, "\\");
    std::erase(components, std::string_view());
    return components;
}

bool IsPlainComponent(std::string_view component) {
    const bool dots = component.find_first_not_of(". ") == std::string_view::npos;
    return !dots && std::ranges::none_of(component, [](char c) {
        return static_cast<unsigned char>(c) < 0x20 || std::string_view(":*?\"<>|/").find(c) != std::string_view::npos;
    });
}

}  // namespace

std::string LocationName(const std::string& location) {
    return PathAfterRoot(location);
}

std::string OriginalListPath(const Program& program, const std::string& location) {
    return program.BesideProgram(LocationName(location) + ".txt");
}

bool IsPlainRelativePath(std::string_view path) {
    return std::ranges::all_of(Components(path), IsPlainComponent);
}

std::string WhyLocationRefused(const std::string& location) {
    if (!HasDriveRoot(location) && !IsNetworkPath(location)) {
        return "a backup location must be a full path with its drive";
    }
    const std::string name = LocationName(location);
    if (!IsPlainRelativePath(name)) {
        return "a backup location must be a plain path";
    }
    const std::vector<std::string_view> components = Components(name);
    if (std::ranges::any_of(components, IsDevice)) {
        return "the name belongs to a device";
    }
    if (components.empty()) {
        return "";
    }
    const std::string_view first = AsTaken(components.front());
    const bool clashes =
        IsOwnFile(first) || LooksLikeAlias(first) || (components.size() == 1 && IsOwnFile(std::string(first) + ".txt"));
    return clashes ? "the name is needed for a file of the program" : "";
}

}  // namespace marlok
