#include "win32/machine/FinalPath.h"

#include <windows.h>

#include <algorithm>
#include <cstring>

#include "win32/machine/FileEntry.h"
#include "win32/machine/Handles.h"
#include "win32/machine/Wide.h"
#include "win32/machine/WidePath.h"

namespace marlok::win32 {

namespace {

/// What the kernel calls all servers of the network.
constexpr std::wstring_view networkDevice = L"\\Device\\Mup\\";

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

/// True for what is said of drives that the keeper of the drive letters has never heard of: those of drivers that bring
/// images and memory as disks, and letters that somebody has defined by hand.
bool HasNoKnownLetter(SystemError code) {
    return code == error::invalidFunction || code == error::pathNotFound || code == error::unrecognizedVolume;
}

bool StartsWith(std::wstring_view path, std::wstring_view start) {
    const auto length = static_cast<int>(start.size());
    return path.size() >= start.size() &&
           CompareStringOrdinal(path.data(), length, start.data(), length, TRUE) == CSTR_EQUAL;
}

/// The path by the letter that leads to the device, found without the keeper of the letters.
bool FinalPathByDevice(HANDLE handle, std::wstring& path) {
    std::wstring devicePath;
    if (FinalPathOf(handle, FILE_NAME_NORMALIZED | VOLUME_NAME_NT, devicePath) != error::success) {
        return false;
    }
    std::wstring found = FromDevicePath(devicePath, DriveDevices());
    if (found.empty()) {
        return false;
    }
    path = std::move(found);
    return true;
}

/// The 128-bit number; false where the file system or the system does not know such numbers.
bool FindWideIdentity(HANDLE handle, FileIdentity& identity) {
    FILE_ID_INFO info{};
    if (GetFileInformationByHandleEx(handle, FileIdInfo, &info, sizeof info) == 0) {
        return false;
    }
    identity.volume = info.VolumeSerialNumber;
    static_assert(sizeof info.FileId == sizeof identity.index + sizeof identity.high);
    std::memcpy(&identity.index, &info.FileId, sizeof identity.index);
    std::memcpy(&identity.high, reinterpret_cast<const char*>(&info.FileId) + sizeof identity.index,
                sizeof identity.high);
    return true;
}

}  // namespace

SystemError FindFinalPath(const std::wstring& path, std::wstring& finalPath) {
    const FileHandle handle = OpenTarget(path);
    if (!handle.IsValid()) {
        return LastError();
    }
    // Some network file systems cannot tell the normalised name; the name as opened has its links resolved as well.
    if (FinalPathOf(handle.Get(), FILE_NAME_NORMALIZED, finalPath) == error::success) {
        return error::success;
    }
    const SystemError code = FinalPathOf(handle.Get(), FILE_NAME_OPENED, finalPath);
    return HasNoKnownLetter(code) && FinalPathByDevice(handle.Get(), finalPath) ? error::success : code;
}

SystemError FindIdentity(const std::wstring& path, FileIdentity& identity) {
    const FileHandle handle = OpenTarget(path);
    if (!handle.IsValid()) {
        return LastError();
    }
    identity = FileIdentity{};
    if (FindWideIdentity(handle.Get(), identity)) {
        return error::success;
    }
    BY_HANDLE_FILE_INFORMATION info{};
    if (GetFileInformationByHandle(handle.Get(), &info) == 0) {
        return LastError();
    }
    identity.volume = info.dwVolumeSerialNumber;
    identity.index = Join(info.nFileIndexHigh, info.nFileIndexLow);
    return error::success;
}

std::vector<DriveDevice> DriveDevices() {
    std::vector<DriveDevice> drives;
    for (wchar_t letter = L'A'; letter <= L'Z'; ++letter) {
        const std::wstring drive = {letter, L':'};
        std::wstring device(32768, L'\0');
        if (QueryDosDeviceW(drive.c_str(), device.data(), static_cast<DWORD>(device.size())) != 0) {
            drives.push_back(
                {drive, device.substr(0, device.find(L'\0'))});  // the first of several is the one in force
        }
    }
    return drives;
}

std::wstring FromDevicePath(std::wstring_view path, const std::vector<DriveDevice>& drives) {
    const auto leadsThere = [path](const DriveDevice& drive) {
        const std::size_t length = drive.device.size();
        return length != 0 && StartsWith(path, drive.device) && (path.size() == length || path[length] == L'\\');
    };
    const auto found = std::find_if(drives.begin(), drives.end(), leadsThere);
    if (found != drives.end()) {
        const std::wstring_view rest = path.substr(found->device.size());
        return found->drive + (rest.empty() ? L"\\" : std::wstring(rest));
    }
    if (StartsWith(path, networkDevice)) {
        return L"\\\\" + std::wstring(path.substr(networkDevice.size()));
    }
    return {};
}

}  // namespace marlok::win32
