#include "win32/machine/Win32FileSystem.h"

#include <windows.h>

#include "win32/machine/Copying.h"
#include "win32/machine/FileEntry.h"
#include "win32/machine/FinalPath.h"
#include "win32/machine/Handles.h"
#include "win32/machine/Removing.h"
#include "win32/machine/Renaming.h"
#include "win32/machine/Volumes.h"
#include "win32/machine/Wide.h"
#include "win32/machine/WidePath.h"
#include "win32/machine/Win32File.h"

namespace marlok::win32 {

namespace {

class Win32FolderSearch : public FolderSearch {
 public:
    explicit Win32FolderSearch(FindHandle handle) : handle_(std::move(handle)) {}

    SystemError Next(DirectoryEntry& entry) override {
        WIN32_FIND_DATAW data{};
        if (FindNextFileW(handle_.Get(), &data) == 0) {
            return LastError();
        }
        entry = ToEntry(data);
        return error::success;
    }

 private:
    FindHandle handle_;
};

}  // namespace

SystemError Win32FileSystem::FindFirst(const std::string& pattern, std::unique_ptr<FolderSearch>& search,
                                       DirectoryEntry& first) {
    search.reset();
    std::wstring wide;
    if (const SystemError code = ToWidePath(pattern, wide)) {
        return code;
    }
    WIN32_FIND_DATAW data{};
    FindHandle handle(FindFirstFileExW(wide.c_str(), FindExInfoStandard, &data, FindExSearchNameMatch, nullptr,
                                       FIND_FIRST_EX_LARGE_FETCH));
    if (!handle.IsValid()) {
        return LastError();
    }
    first = ToEntry(data);
    search = std::make_unique<Win32FolderSearch>(std::move(handle));
    return error::success;
}

SystemError Win32FileSystem::GetEntry(const std::string& path, DirectoryEntry& entry) {
    std::wstring wide;
    if (const SystemError code = ToWidePath(path, wide)) {
        return code;
    }
    return EntryOf(wide, entry);
}

SystemError Win32FileSystem::CreateFolder(const std::string& path) {
    std::wstring wide;
    if (const SystemError code = ToWidePath(path, wide)) {
        return code;
    }
    return ResultOf(CreateDirectoryW(wide.c_str(), nullptr));
}

SystemError Win32FileSystem::RemoveFolder(const std::string& path) {
    std::wstring wide;
    if (const SystemError code = ToWidePath(path, wide)) {
        return code;
    }
    DirectoryEntry entry;
    if (const SystemError code = EntryOf(wide, entry)) {
        return code;
    }
    if (entry.IsLink()) {
        return error::notSupported;
    }
    return ResultOf(RemoveDirectoryW(wide.c_str()));
}

SystemError Win32FileSystem::RemoveLink(const std::string& path) {
    std::wstring wide;
    if (const SystemError code = ToWidePath(path, wide)) {
        return code;
    }
    return RemoveOneLink(wide);
}

SystemError Win32FileSystem::Delete(const std::string& path) {
    std::wstring wide;
    if (const SystemError code = ToWidePath(path, wide)) {
        return code;
    }
    return DeleteOneFile(wide);
}

SystemError Win32FileSystem::Move(const std::string& from, const std::string& to, std::uint32_t flags) {
    std::wstring wideFrom;
    if (const SystemError code = ToWidePath(from, wideFrom)) {
        return code;
    }
    std::wstring wideTo;
    if (const SystemError code = ToWidePath(to, wideTo)) {
        return code;
    }
    return MoveOne(wideFrom, wideTo, flags);
}

SystemError Win32FileSystem::Replace(const std::string& replaced, const std::string& replacement,
                                     const std::string& backup) {
    Replacement wide;
    if (const SystemError code = ToWidePath(replaced, wide.replaced)) {
        return code;
    }
    if (const SystemError code = ToWidePath(replacement, wide.replacement)) {
        return code;
    }
    if (const SystemError code = ToWidePath(backup, wide.backup)) {
        return code;
    }
    return ReplaceOne(wide);
}

SystemError Win32FileSystem::Copy(const std::string& from, const std::string& to, std::uint32_t flags,
                                  const CopyProgressRoutine& progress) {
    std::wstring wideFrom;
    if (const SystemError code = ToWidePath(from, wideFrom)) {
        return code;
    }
    std::wstring wideTo;
    if (const SystemError code = ToWidePath(to, wideTo)) {
        return code;
    }
    return CopyFileTelling(wideFrom, wideTo, flags, progress);
}

SystemError Win32FileSystem::SetAttributes(const std::string& path, std::uint32_t attributes) {
    std::wstring wide;
    if (const SystemError code = ToWidePath(path, wide)) {
        return code;
    }
    return ResultOf(SetFileAttributesW(wide.c_str(), attributes));
}

SystemError Win32FileSystem::Open(const std::string& path, OpenMode mode, std::unique_ptr<File>& file) {
    file.reset();
    std::wstring wide;
    if (const SystemError code = ToWidePath(path, wide)) {
        return code;
    }
    return Win32File::Open(wide, mode, file);
}

SystemError Win32FileSystem::FinalPath(const std::string& path, std::string& finalPath) {
    std::wstring wide;
    if (const SystemError code = ToWidePath(path, wide)) {
        return code;
    }
    std::wstring found;
    if (const SystemError code = FindFinalPath(wide, found)) {
        return code;
    }
    finalPath = FromWide(found);
    return error::success;
}

SystemError Win32FileSystem::Identify(const std::string& path, FileIdentity& identity) {
    std::wstring wide;
    if (const SystemError code = ToWidePath(path, wide)) {
        return code;
    }
    return FindIdentity(wide, identity);
}

SystemError Win32FileSystem::GetVolume(const std::string& path, Volume& volume) {
    std::wstring wide;
    if (const SystemError code = ToWidePath(path, wide)) {
        return code;
    }
    return FindVolume(wide, volume);
}

}  // namespace marlok::win32
