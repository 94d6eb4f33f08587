#include "fileops/Deleting.h"

#include <vector>

#include "fileops/FolderListing.h"
#include "paths/Names.h"
#include "paths/Path.h"
#include "paths/Roots.h"

namespace marlok {

namespace {

void Remember(SystemError& first, SystemError code) {
    if (first == error::success) {
        first = code;
    }
}

SystemError DeleteEntry(FileSystem& files, const std::string& path, const DirectoryEntry& entry);

/// Deletes a folder with everything in it. Everything is listed before anything goes: a listing that is changed while
/// it runs may leave entries out.
SystemError DeleteTree(FileSystem& files, const std::string& folder) {
    std::vector<DirectoryEntry> entries;
    SystemError first = ListFolder(files, folder, [&entries](DirectoryEntry& entry) {
        entries.push_back(std::move(entry));
        return true;
    });
    for (const DirectoryEntry& entry : entries) {
        Remember(first, DeleteEntry(files, Join(folder, entry.name), entry));
    }
    Remember(first, RemoveEmptyFolder(files, folder));
    return first;
}

SystemError DeleteEntry(FileSystem& files, const std::string& path, const DirectoryEntry& entry) {
    if (entry.IsLink()) {
        return files.RemoveLink(path);
    }
    return entry.IsFolder() ? DeleteTree(files, path) : ForceDelete(files, path);
}

int AsShellCode(SystemError code) {
    switch (code) {
        case error::success:
            return shellcode::success;
        case error::fileNotFound:
            return shellcode::fileNotFound;
        case error::pathNotFound:
            return shellcode::invalidFiles;
        default:
            return shellcode::accessDenied;
    }
}

SystemError DeleteMatches(FileSystem& files, const std::string& pattern) {
    std::vector<DirectoryEntry> entries;
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    SystemError code = files.FindFirst(pattern, search, entry);
    SystemError first = code == error::pathNotFound ? code : error::success;
    while (code == error::success) {
        if (entry.name != "." && entry.name != "..") {
            entries.push_back(entry);
        }
        code = search->Next(entry);
    }
    search.reset();
    for (const DirectoryEntry& found : entries) {
        Remember(first, DeleteEntry(files, Join(FolderOf(pattern), found.name), found));
    }
    return first;
}

}  // namespace

SystemError ForceDelete(FileSystem& files, const std::string& path) {
    SystemError code = files.Delete(path);
    if (code == error::accessDenied && files.SetAttributes(path, attribute::normal) == error::success) {
        code = files.Delete(path);
    }
    return code;
}

SystemError RemoveEmptyFolder(FileSystem& files, const std::string& path) {
    SystemError code = files.RemoveFolder(path);
    if (code == error::accessDenied && files.SetAttributes(path, attribute::normal) == error::success) {
        code = files.RemoveFolder(path);
    }
    return code;
}

SystemError DeleteWhole(FileSystem& files, const std::string& path) {
    const std::string plain = WithoutBackslash(path);
    if (plain.empty()) {
        return error::fileNotFound;
    }
    if (IsRoot(plain)) {
        return error::accessDenied;
    }
    DirectoryEntry entry;
    const SystemError looked = files.GetEntry(plain, entry);
    return looked == error::success ? DeleteEntry(files, plain, entry) : looked;
}

int DeleteThisFile(FileSystem& files, const std::string& path) {
    const std::string plain = WithoutBackslash(path);
    if (IsRoot(plain)) {
        return shellcode::rootFolder;
    }
    return AsShellCode(HasWildcard(plain) ? DeleteMatches(files, plain) : DeleteWhole(files, plain));
}

}  // namespace marlok
