#include "win32/machine/Win32FileSystem.h"

#include <windows.h>

#include <exception>

#include "win32/machine/Handles.h"
#include "win32/machine/Wide.h"
#include "win32/machine/WidePath.h"
#include "win32/machine/Win32File.h"

namespace marlok::win32 {

namespace {

constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

std::uint64_t Join(DWORD high, DWORD low) {
    return (std::uint64_t{high} << 32) | low;
}

FileTime ToFileTime(const FILETIME& time) {
    return Join(time.dwHighDateTime, time.dwLowDateTime);
}

DirectoryEntry ToEntry(const WIN32_FIND_DATAW& data) {
    DirectoryEntry entry;
    entry.name = FromWide(data.cFileName);
    entry.alternateName = FromWide(data.cAlternateFileName);
    entry.attributes = data.dwFileAttributes;
    // The field means something for reparse points only.
    entry.reparseTag = (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 ? data.dwReserved0 : 0;
    entry.creationTime = ToFileTime(data.ftCreationTime);
    entry.lastWriteTime = ToFileTime(data.ftLastWriteTime);
    entry.size = Join(data.nFileSizeHigh, data.nFileSizeLow);
    return entry;
}

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

/// Opens the link itself where `path` is one.
FileHandle OpenItself(const std::wstring& path, DWORD access) {
    return FileHandle(CreateFileW(path.c_str(), access, shareAll, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

/// Opens what `path` leads to, with just enough access to ask for its name and identity.
FileHandle OpenTarget(const std::wstring& path) {
    return FileHandle(
        CreateFileW(path.c_str(), 0, shareAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

std::uint32_t ReparseTag(const std::wstring& path) {
    const FileHandle handle = OpenItself(path, FILE_READ_ATTRIBUTES);
    FILE_ATTRIBUTE_TAG_INFO info{};
    // A tag that cannot be read is "not told", which counts as a link: the careful answer.
    if (!handle.IsValid() ||
        GetFileInformationByHandleEx(handle.Get(), FileAttributeTagInfo, &info, sizeof info) == 0) {
        return 0;
    }
    return info.ReparseTag;
}

/// A file that somebody keeps for himself alone (a page file, a mailbox) refuses even this question; the listing of its
/// folder does not.
SystemError EntryFromListing(const std::wstring& path, DirectoryEntry& entry) {
    WIN32_FIND_DATAW data{};
    const FindHandle handle(FindFirstFileW(path.c_str(), &data));
    if (!handle.IsValid()) {
        return LastError();
    }
    entry = ToEntry(data);
    entry.name.clear();
    entry.alternateName.clear();
    return error::success;
}

SystemError EntryOf(const std::wstring& path, DirectoryEntry& entry) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) == 0) {
        const SystemError code = LastError();
        return code == error::sharingViolation ? EntryFromListing(path, entry) : code;
    }
    entry = DirectoryEntry{};
    entry.attributes = data.dwFileAttributes;
    entry.creationTime = ToFileTime(data.ftCreationTime);
    entry.lastWriteTime = ToFileTime(data.ftLastWriteTime);
    entry.size = Join(data.nFileSizeHigh, data.nFileSizeLow);
    if ((data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
        entry.reparseTag = ReparseTag(path);
    }
    return error::success;
}

SystemError ResultOf(BOOL succeeded) {
    return succeeded != 0 ? error::success : LastError();
}

/// What a running copy needs on both sides of the kernel.
struct CopyCall {
    const CopyProgressRoutine& progress;
    bool told = false;
    std::exception_ptr thrown = nullptr;
};

/// An exception must not travel through the kernel's frames: it is kept, the copy is called off, and the exception goes
/// on from Copy.
DWORD CALLBACK OnCopyProgress(LARGE_INTEGER total, LARGE_INTEGER transferred, LARGE_INTEGER, LARGE_INTEGER, DWORD,
                              DWORD reason, HANDLE, HANDLE, LPVOID data) {
    auto& call = *static_cast<CopyCall*>(data);
    call.told = true;
    try {
        call.progress({static_cast<std::uint64_t>(total.QuadPart), static_cast<std::uint64_t>(transferred.QuadPart),
                       static_cast<CopyProgressInfo::Reason>(reason)});
    } catch (...) {
        call.thrown = std::current_exception();
        return PROGRESS_CANCEL;
    }
    return PROGRESS_CONTINUE;
}

/// There are systems that copy without telling: there the routine learns the start and the end, once the file is there.
void TellAfterwards(const std::wstring& copy, const CopyProgressRoutine& progress) {
    DirectoryEntry entry;
    if (EntryOf(copy, entry) != error::success) {
        return;  // taken away by somebody already; the copy itself was done
    }
    progress({entry.size, 0, CopyProgressInfo::Reason::streamSwitch});
    if (entry.size != 0) {
        progress({entry.size, entry.size, CopyProgressInfo::Reason::chunkFinished});
    }
}

SystemError FinalPathOf(HANDLE handle, DWORD flags, std::wstring& path) {
    std::wstring buffer(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetFinalPathNameByHandleW(handle, buffer.data(), static_cast<DWORD>(buffer.size()), flags);
        if (length == 0) {
            return LastError();
        }
        if (length < buffer.size()) {
            buffer.resize(length);
            path = WithoutLongForm(buffer);
            return error::success;
        }
        buffer.resize(std::size_t{length} + 1);
    }
}

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
    const FileHandle handle = OpenItself(wide, DELETE | FILE_READ_ATTRIBUTES);
    if (!handle.IsValid()) {
        return LastError();
    }
    // The handle itself must say that it is the link. There are systems that open the target all the same; removing
    // through such a handle would destroy what the link leads to.
    FILE_ATTRIBUTE_TAG_INFO info{};
    if (GetFileInformationByHandleEx(handle.Get(), FileAttributeTagInfo, &info, sizeof info) == 0) {
        return error::notSupported;
    }
    if ((info.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0 || (info.ReparseTag & reparse::nameSurrogate) == 0) {
        return error::notSupported;
    }
    FILE_DISPOSITION_INFO disposition{};
    disposition.DeleteFile = TRUE;
    return ResultOf(SetFileInformationByHandle(handle.Get(), FileDispositionInfo, &disposition, sizeof disposition));
}

SystemError Win32FileSystem::Delete(const std::string& path) {
    std::wstring wide;
    if (const SystemError code = ToWidePath(path, wide)) {
        return code;
    }
    const DWORD attributes = GetFileAttributesW(wide.c_str());
    // Folders, and links to folders above all, never reach the deletion.
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return error::accessDenied;
    }
    return ResultOf(DeleteFileW(wide.c_str()));
}

SystemError Win32FileSystem::Move(const std::string& from, const std::string& to, bool replace) {
    std::wstring wideFrom;
    if (const SystemError code = ToWidePath(from, wideFrom)) {
        return code;
    }
    std::wstring wideTo;
    if (const SystemError code = ToWidePath(to, wideTo)) {
        return code;
    }
    return ResultOf(MoveFileExW(wideFrom.c_str(), wideTo.c_str(), replace ? MOVEFILE_REPLACE_EXISTING : 0));
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
    CopyCall call{progress};
    BOOL cancel = FALSE;
    const BOOL copied =
        CopyFileExW(wideFrom.c_str(), wideTo.c_str(), progress ? &OnCopyProgress : nullptr, &call, &cancel, flags);
    const SystemError code = ResultOf(copied);
    if (call.thrown) {
        std::rethrow_exception(call.thrown);
    }
    if (code == error::success && progress && !call.told) {
        TellAfterwards(wideTo, progress);
    }
    return code;
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
    const FileHandle handle = OpenTarget(wide);
    if (!handle.IsValid()) {
        return LastError();
    }
    std::wstring found;
    // Some network file systems cannot tell the normalised name; the name as opened has its links resolved as well.
    if (FinalPathOf(handle.Get(), FILE_NAME_NORMALIZED, found) != error::success) {
        if (const SystemError code = FinalPathOf(handle.Get(), FILE_NAME_OPENED, found)) {
            return code;
        }
    }
    finalPath = FromWide(found);
    return error::success;
}

SystemError Win32FileSystem::Identify(const std::string& path, FileIdentity& identity) {
    std::wstring wide;
    if (const SystemError code = ToWidePath(path, wide)) {
        return code;
    }
    const FileHandle handle = OpenTarget(wide);
    if (!handle.IsValid()) {
        return LastError();
    }
    BY_HANDLE_FILE_INFORMATION info{};
    if (GetFileInformationByHandle(handle.Get(), &info) == 0) {
        return LastError();
    }
    identity.volume = info.dwVolumeSerialNumber;
    identity.index = Join(info.nFileIndexHigh, info.nFileIndexLow);
    return error::success;
}

}  // namespace marlok::win32
