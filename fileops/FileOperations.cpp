#include "fileops/FileOperations.h"

#include <vector>

#include "fileops/Callback.h"
#include "fileops/FolderFunctions.h"
#include "fileops/txtFunctions.h"
#include "text/Text.h"

namespace marlok {

namespace {

constexpr std::uint16_t shellFlags = shellflag::silent | shellflag::noConfirmation;

/// The shell's own code for "the source is a root directory".
constexpr int rootRefused = 0x74;

/// The last value that the counting bar shows before it starts again at 1.
constexpr int lastCount = 99;

bool IsDots(const std::string& name) {
    return name == "." || name == "..";
}

/// Entries of a folder without "." and "..". `complete` is false when the folder could not be listed to its end.
std::vector<DirectoryEntry> ListEntries(FileSystem& files, const std::string& pattern, bool& complete) {
    std::vector<DirectoryEntry> entries;
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    SystemError code = files.FindFirst(pattern, search, entry);
    while (code == error::success) {
        if (!IsDots(entry.name)) {
            entries.push_back(entry);
        }
        code = search->Next(entry);
    }
    complete = code == error::noMoreFiles || code == error::fileNotFound;
    return entries;
}

/// Removes all links from the tree below `folder`. False when one stays, or part of the tree could not be seen: then
/// nothing that might follow links may be let at it.
bool RemoveLinksBelow(FileSystem& files, const std::string& folder) {
    bool clean = true;
    const std::vector<DirectoryEntry> entries = ListEntries(files, AddBackslash(folder) + "*", clean);
    for (const DirectoryEntry& entry : entries) {
        const std::string path = AddBackslash(folder) + entry.name;
        if (entry.IsLink()) {
            clean = files.RemoveLink(path) == error::success && clean;
        } else if (entry.IsFolder()) {
            clean = RemoveLinksBelow(files, path) && clean;
        }
    }
    return clean;
}

void Remember(SystemError& first, SystemError code) {
    if (first == error::success) {
        first = code;
    }
}

/// Deletes a folder with everything in it by the kernel; links that cannot be removed stay, and so do the folders they
/// lie in. Returns the first error.
SystemError DeleteTree(FileSystem& files, const std::string& folder) {
    bool complete = true;
    SystemError first = error::success;
    const std::vector<DirectoryEntry> entries = ListEntries(files, AddBackslash(folder) + "*", complete);
    for (const DirectoryEntry& entry : entries) {
        const std::string path = AddBackslash(folder) + entry.name;
        if (entry.IsLink()) {
            Remember(first, files.RemoveLink(path));
        } else {
            Remember(first, entry.IsFolder() ? DeleteTree(files, path) : ForceDelete(files, path));
        }
    }
    SystemError removed = files.RemoveFolder(folder);
    if (removed == error::accessDenied && files.SetAttributes(folder, attribute::normal) == error::success) {
        removed = files.RemoveFolder(folder);
    }
    Remember(first, removed);
    return first;
}

int ShellDelete(Shell& shell, const std::string& path) {
    return shell.Perform({ShellFileOperation::Kind::remove, path, "", shellFlags});
}

bool Exists(FileSystem& files, const std::string& path) {
    DirectoryEntry entry;
    return files.GetEntry(path, entry) == error::success;
}

int DeleteFolder(FileSystem& files, Shell& shell, const std::string& path) {
    int code = 0;
    if (RemoveLinksBelow(files, path)) {
        code = ShellDelete(shell, path);
        if (!Exists(files, path)) {
            return code;
        }
    }
    return static_cast<int>(DeleteTree(files, path));
}

int DeleteMatches(FileSystem& files, Shell& shell, const std::string& pattern) {
    bool complete = true;
    const std::vector<DirectoryEntry> entries = ListEntries(files, pattern, complete);
    if (entries.empty()) {
        return ShellDelete(shell, pattern);
    }
    int first = 0;
    for (const DirectoryEntry& entry : entries) {
        const int code = DeleteThisFile(files, shell, AddBackslash(FolderOf(pattern)) + entry.name);
        first = first == 0 ? code : first;
    }
    return first;
}

}  // namespace

int CopyThisFile(Shell& shell, const std::string& source, const std::string& destination) {
    return shell.Perform({ShellFileOperation::Kind::copy, source, destination, shellFlags});
}

int DeleteThisFile(FileSystem& files, Shell& shell, const std::string& path) {
    const std::string plain = WithoutBackslash(path);
    if (plain.empty()) {
        return static_cast<int>(error::fileNotFound);
    }
    if (HasDriveRoot(plain) && plain.size() == 3) {
        return rootRefused;
    }
    if (PathFindFileName(plain).find_first_of("*?") != std::string_view::npos) {
        return DeleteMatches(files, shell, plain);
    }
    DirectoryEntry entry;
    const SystemError looked = files.GetEntry(plain, entry);
    if (looked == error::fileNotFound || looked == error::pathNotFound) {
        return ShellDelete(shell, plain);
    }
    if (looked != error::success) {
        return static_cast<int>(looked);  // what it is, nobody knows: the shell might delete through a link
    }
    if (entry.IsLink()) {
        return static_cast<int>(files.RemoveLink(plain));
    }
    if (entry.IsFolder()) {
        return DeleteFolder(files, shell, plain);
    }
    const int code = ShellDelete(shell, plain);
    return code != 0 && Exists(files, plain) ? static_cast<int>(ForceDelete(files, plain)) : code;
}

SystemError CopyWithProgress(FileSystem& files, const std::string& source, const std::string& destination,
                             forms::ProgressBar& bar, std::uint32_t flags, const std::function<void()>& meanwhile) {
    return files.Copy(source, destination, flags | copyflag::restartable, [&](const CopyProgressInfo& info) {
        CopyProgress(bar, info);
        if (meanwhile) {
            meanwhile();
        }
        return CopyAnswer::goOn;
    });
}

SystemError CopyCountingFiles(FileSystem& files, const std::string& source, const std::string& destination,
                              forms::ProgressBar& bar, std::uint32_t flags) {
    const int shown = static_cast<int>(bar.Value.Get());
    bar.Value = static_cast<float>((shown == lastCount ? 0 : shown) + 1);
    return CopyPlain(files, source, destination, flags);
}

SystemError CopyPlain(FileSystem& files, const std::string& source, const std::string& destination,
                      std::uint32_t flags) {
    return files.Copy(source, destination, flags, nullptr);
}

}  // namespace marlok
