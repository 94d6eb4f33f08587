#include "win32/machine/Removing.h"

#include <windows.h>

#include "win32/machine/FileEntry.h"
#include "win32/machine/HandleInfo.h"
#include "win32/machine/Wide.h"

namespace marlok::win32 {

namespace {

/// Frees the name at once, whoever else has the file open; `IsNotThere` errors where that cannot be done.
SystemError RemoveAtOnce(HANDLE handle) {
    if (!HasNewHandleClasses()) {
        return error::invalidParameter;
    }
    DWORD flags = 0x1 | 0x2;  // delete; as POSIX systems do
    return ResultOf(SetFileInformationByHandle(handle, handleclass::dispositionEx, &flags, sizeof flags));
}

/// The name stays until the last handle of the file is closed.
SystemError RemoveWithLastHandle(HANDLE handle) {
    FILE_DISPOSITION_INFO disposition{};
    disposition.DeleteFile = TRUE;
    return ResultOf(SetFileInformationByHandle(handle, FileDispositionInfo, &disposition, sizeof disposition));
}

SystemError RemoveByHandle(HANDLE handle) {
    const SystemError code = RemoveAtOnce(handle);
    return IsNotThere(code) ? RemoveWithLastHandle(handle) : code;
}

/// The handle itself must say that it is the link. There are systems that open the target all the same; removing
/// through such a handle would destroy what the link leads to.
bool IsLinkItself(HANDLE handle) {
    FILE_ATTRIBUTE_TAG_INFO info{};
    return GetFileInformationByHandleEx(handle, FileAttributeTagInfo, &info, sizeof info) != 0 &&
           (info.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && (info.ReparseTag & reparse::nameSurrogate) != 0;
}

/// A handle that may delete the file or the link at `path`; folders cannot be opened this way.
FileHandle OpenFileItself(const std::wstring& path) {
    return FileHandle(CreateFileW(path.c_str(), DELETE | FILE_READ_ATTRIBUTES,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
}

}  // namespace

SystemError DeleteOneFile(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    // Folders, and links to folders above all, never reach the deletion.
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return error::accessDenied;
    }
    if (HasNewHandleClasses()) {
        const FileHandle handle = OpenFileItself(path);
        const SystemError code = handle.IsValid() ? RemoveAtOnce(handle.Get()) : LastError();
        if (!IsNotThere(code)) {
            return code;
        }
    }
    return ResultOf(DeleteFileW(path.c_str()));
}

SystemError RemoveOneLink(const std::wstring& path) {
    const FileHandle handle = OpenItself(path, DELETE | FILE_READ_ATTRIBUTES);
    if (!handle.IsValid()) {
        return LastError();
    }
    return IsLinkItself(handle.Get()) ? RemoveByHandle(handle.Get()) : error::notSupported;
}

}  // namespace marlok::win32
