#include "win32/machine/FinalPath.h"

#include <windows.h>

#include "win32/machine/FileEntry.h"
#include "win32/machine/Handles.h"
#include "win32/machine/Wide.h"
#include "win32/machine/WidePath.h"

namespace marlok::win32 {

namespace {

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

SystemError FindFinalPath(const std::wstring& path, std::wstring& finalPath) {
    const FileHandle handle = OpenTarget(path);
    if (!handle.IsValid()) {
        return LastError();
    }
    // Some network file systems cannot tell the normalised name; the name as opened has its links resolved as well.
    if (FinalPathOf(handle.Get(), FILE_NAME_NORMALIZED, finalPath) != error::success) {
        if (const SystemError code = FinalPathOf(handle.Get(), FILE_NAME_OPENED, finalPath)) {
            return code;
        }
    }
    return error::success;
}

SystemError FindIdentity(const std::wstring& path, FileIdentity& identity) {
    const FileHandle handle = OpenTarget(path);
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
