#include "fileops/FolderFunctions.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "fileops/Errors.h"
#include "fileops/txtFunctions.h"
#include "platform/Clock.h"
#include "text/Text.h"

namespace marlok {

namespace {

/// How far into a list of original paths its first drive root is sought, in characters.
constexpr std::size_t rootSearchLength = 200;

bool IsDriveLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

/// Length of "\\server\share\" at the start of a network path that ends in "\".
std::size_t NetworkRootLength(const std::string& path) {
    const std::size_t server = path.find('\\', 2);
    const std::size_t share = server == std::string::npos ? server : path.find('\\', server + 1);
    return share == std::string::npos ? path.size() : share + 1;
}

/// Cuts what need not be created off the front of `path` (which ends in "\") and returns it.
std::string TakeStart(std::string& path, Process& process) {
    std::size_t length = 0;
    if (HasDriveRoot(path)) {
        length = 3;
    } else if (IsNetworkPath(path)) {
        length = NetworkRootLength(path);
    } else {
        return AddBackslash(process.CurrentFolder());
    }
    std::string start = path.substr(0, length);
    path.erase(0, length);
    return start;
}

}  // namespace

std::string AddBackslash(std::string_view path) {
    std::string result(path);
    if (result.empty() || result.back() != '\\') {
        result += '\\';
    }
    return result;
}

std::string WithoutBackslash(std::string_view path) {
    while (path.size() > 1 && path.back() == '\\' && !(path.size() == 3 && path[1] == ':')) {
        path.remove_suffix(1);
    }
    return std::string(path);
}

std::string_view PathFindNextComponent(std::string_view path) {
    const std::size_t slash = path.find('\\');
    if (slash == std::string_view::npos) {
        return {};
    }
    const bool doubled = slash + 1 < path.size() && path[slash + 1] == '\\';
    return path.substr(slash + (doubled ? 2 : 1));
}

std::string_view PathFindFileName(std::string_view path) {
    std::size_t last = 0;
    for (std::size_t i = 0; i + 1 < path.size(); ++i) {
        const bool separator = path[i] == '\\' || path[i] == '/' || path[i] == ':';
        if (separator && path[i + 1] != '\\' && path[i + 1] != '/') {
            last = i + 1;
        }
    }
    return path.substr(last);
}

std::string FileNameOf(std::string_view path) {
    return std::string(PathFindFileName(path));
}

std::string PathAfterRoot(std::string_view path) {
    return std::string(PathFindNextComponent(path));
}

std::string FolderOf(std::string_view path) {
    const std::size_t slash = path.rfind('\\');
    if (slash == std::string_view::npos) {
        return "";
    }
    return WithoutBackslash(path.substr(0, slash + 1));
}

bool HasDriveRoot(std::string_view path) {
    return path.size() >= 3 && IsDriveLetter(path[0]) && path[1] == ':' && path[2] == '\\';
}

bool IsNetworkPath(std::string_view path) {
    return path.starts_with("\\\\");
}

bool IsDirectoryPath(FileSystem& files, const std::string& path) {
    DirectoryEntry entry;
    return files.GetEntry(path, entry) == error::success && entry.IsFolder();
}

bool FileExists(FileSystem& files, const std::string& path) {
    constexpr std::uint32_t notNormal = attribute::directory | attribute::hidden | attribute::system;
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    SystemError found = files.FindFirst(path, search, entry);
    while (found == error::success) {
        if ((entry.attributes & notNormal) == 0) {
            return true;
        }
        found = search->Next(entry);
    }
    return false;
}

std::string NextToken(std::string& text, std::string_view delimiter) {
    const std::size_t found = delimiter.empty() ? std::string::npos : text.find(delimiter);
    if (found == std::string::npos) {
        return "";
    }
    std::string token = text.substr(0, found + delimiter.size());
    text.erase(0, token.size());
    return token;
}

std::unique_ptr<FolderSearch> OpenFolderSearch(FileSystem& files, const std::string& folder, DirectoryEntry& first) {
    std::unique_ptr<FolderSearch> search;
    if (files.FindFirst(AddBackslash(folder) + "*.*", search, first) != error::success) {
        return nullptr;
    }
    return search;
}

bool CreateNestedFolders(FileSystem& files, Process& process, const std::string& path) {
    std::string rest = AddBackslash(path);
    std::string built = TakeStart(rest, process);
    while (!rest.empty()) {
        built += NextToken(rest, "\\");
        // Most folders of a path exist: only the listing below tells whether the whole path does.
        static_cast<void>(files.CreateFolder(WithoutBackslash(built)));
    }
    DirectoryEntry first;
    return OpenFolderSearch(files, built, first) != nullptr || IsDirectoryPath(files, built);
}

void EnsureFolderFor(FileSystem& files, Process& process, const std::string& path) {
    const std::string folder = text::HasThreeLetterExtension(path) ? FolderOf(path) : path;
    if (!IsDirectoryPath(files, folder) && !FileExists(files, folder)) {
        // The copy that follows reports a folder that is still missing.
        static_cast<void>(CreateNestedFolders(files, process, folder));
    }
}

std::string CreateFolder(FileSystem& files, const std::string& path) {
    const SystemError code = files.CreateFolder(path);
    if (code != error::success) {
        Raise(code);
    }
    return path;
}

std::string FolderCreationDate(FileSystem& files, Clock& clock, const std::string& path) {
    DirectoryEntry entry;
    if (files.GetEntry(path, entry) != error::success || !entry.IsFolder()) {
        return "";
    }
    const LocalTime time = clock.ToLocal(entry.creationTime);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d", time.year, time.month, time.day, time.hour,
                  time.minute, time.second);
    return text.data();
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

std::string FindOriginalPath(FileSystem& files, SystemInfo& system, const std::string& list, const std::string& name,
                             bool& gSearchOn) {
    const std::string text = ReadTextFile(files, system, list);
    const std::size_t found = text.find(name);
    if (found == std::string::npos) {
        gSearchOn = false;
        return "";
    }
    return OriginalPathAt(text, found, name);
}

std::string StringFromPointer(SystemInfo& system, const char* text) {
    return text == nullptr ? std::string() : system.FromCodePage(text);
}

}  // namespace marlok
