#include "fileops/FolderFunctions.h"

#include <array>
#include <cstdio>

#include "fileops/Errors.h"
#include "paths/Path.h"
#include "paths/Roots.h"

namespace marlok {

namespace {

/// Cuts what need not be created off the front of `path` (which ends in "\") and returns it.
std::string TakeStart(std::string& path, Process& process) {
    const std::size_t length = RootOf(path).length;
    if (length == 0) {
        return AddBackslash(process.CurrentFolder());
    }
    std::string start = path.substr(0, length);
    path.erase(0, length);
    return start;
}

}  // namespace

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
    const std::string folder = HasThreeLetterExtension(path) ? FolderOf(path) : path;
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

std::string StringFromPointer(SystemInfo& system, const char* text) {
    return text == nullptr ? std::string() : system.FromCodePage(text);
}

}  // namespace marlok
