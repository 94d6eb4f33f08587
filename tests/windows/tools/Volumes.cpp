#include "tests/windows/tools/Volumes.h"

#include <winioctl.h>

#include <array>
#include <cstring>
#include <stdexcept>
#include <vector>

namespace marlok::test {

namespace {

// Wine's mount manager takes this request beside those of Windows.
constexpr DWORD defineUnixDrive = CTL_CODE('m', 32, METHOD_BUFFERED, FILE_READ_ACCESS | FILE_WRITE_ACCESS);
constexpr ULONG noDrive = 1;

/// The request begins with it; texts follow, each ended by a zero, at the offsets named. An offset of 0 stands for
/// none.
struct UnixDrive {
    ULONG size;
    ULONG kind;
    ULONG fileSystem;
    DWORD serial;
    ULONGLONG device;
    WCHAR letter;
    USHORT folderOffset;
    USHORT deviceOffset;
    USHORT labelOffset;
};

[[noreturn]] void Fail(const std::string& what) {
    throw std::runtime_error(what + ": error " + std::to_string(GetLastError()));
}

USHORT Append(std::vector<char>& request, const std::string& text) {
    if (text.empty()) {
        return 0;
    }
    const std::size_t offset = request.size();
    request.insert(request.end(), text.begin(), text.end());
    request.push_back('\0');
    return static_cast<USHORT>(offset);
}

void Define(wchar_t letter, ULONG kind, const std::string& folder, const std::string& device) {
    std::vector<char> request(sizeof(UnixDrive));
    UnixDrive drive{};
    drive.kind = kind;
    drive.letter = letter;
    drive.folderOffset = Append(request, folder);
    drive.deviceOffset = Append(request, device);
    drive.size = static_cast<ULONG>(request.size());
    std::memcpy(request.data(), &drive, sizeof drive);
    HANDLE manager = CreateFileW(L"\\\\.\\MountPointManager", GENERIC_READ | GENERIC_WRITE,
                                 FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    if (manager == INVALID_HANDLE_VALUE) {
        Fail("no mount manager");
    }
    DWORD returned = 0;
    const BOOL done =
        DeviceIoControl(manager, defineUnixDrive, request.data(), drive.size, nullptr, 0, &returned, nullptr);
    const DWORD error = done != FALSE ? ERROR_SUCCESS : GetLastError();
    CloseHandle(manager);
    if (done == FALSE) {
        SetLastError(error);
        Fail("the mount manager refuses");
    }
}

}  // namespace

void PlugDrive(wchar_t letter, DriveKind kind, const std::string& unixFolder, const std::string& unixDevice) {
    Define(letter, static_cast<ULONG>(kind), unixFolder, unixDevice);
}

void UnplugDrive(wchar_t letter) {
    Define(letter, noDrive, {}, {});
}

Volume VolumeAt(const std::wstring& root) {
    std::array<wchar_t, MAX_PATH + 1> label{};
    std::array<wchar_t, MAX_PATH + 1> fileSystem{};
    Volume volume;
    if (GetVolumeInformationW(root.c_str(), label.data(), static_cast<DWORD>(label.size()), &volume.serial, nullptr,
                              nullptr, fileSystem.data(), static_cast<DWORD>(fileSystem.size())) == FALSE) {
        Fail("no volume");
    }
    volume.label = label.data();
    volume.fileSystem = fileSystem.data();
    volume.kind = GetDriveTypeW(root.c_str());
    return volume;
}

}  // namespace marlok::test
