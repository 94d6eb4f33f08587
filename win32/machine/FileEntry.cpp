#include "win32/machine/FileEntry.h"

#include "win32/machine/Wide.h"

namespace marlok::win32 {

namespace {

constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

FileTime ToFileTime(const FILETIME& time) {
    return Join(time.dwHighDateTime, time.dwLowDateTime);
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

}  // namespace

std::uint64_t Join(DWORD high, DWORD low) {
    return (std::uint64_t{high} << 32) | low;
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

FileHandle OpenItself(const std::wstring& path, DWORD access) {
    return FileHandle(CreateFileW(path.c_str(), access, shareAll, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

FileHandle OpenTarget(const std::wstring& path) {
    return FileHandle(
        CreateFileW(path.c_str(), 0, shareAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
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

}  // namespace marlok::win32
