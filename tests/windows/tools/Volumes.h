#pragma once

#include <windows.h>

#include <string>

/// Drives of a Wine machine while it runs, as when a stick is put in, taken out, or exchanged for another.
namespace marlok::test {

enum class DriveKind : ULONG { removable = 2, fixed = 3 };

/// Makes `unixFolder`, a folder of the machine that Wine runs on, the drive `letter`, in place of what was there. Its
/// label and serial number are those of the folder's files ".windows-label" and ".windows-serial"; with `unixDevice`,
/// a block device, they and the file system's name are those of the device. No program is notified.
/// @throws std::runtime_error when it cannot be done, as on Windows itself.
void PlugDrive(wchar_t letter, DriveKind kind, const std::string& unixFolder, const std::string& unixDevice = {});

/// Takes the drive away.
/// @throws std::runtime_error when it cannot be done.
void UnplugDrive(wchar_t letter);

struct Volume {
    std::wstring fileSystem;
    DWORD serial = 0;
    std::wstring label;
    UINT kind = 0;  ///< as GetDriveTypeW has it
};

/// What the system says about the volume at a root such as "E:\".
/// @throws std::runtime_error with the error number when it says nothing.
[[nodiscard]] Volume VolumeAt(const std::wstring& root);

}  // namespace marlok::test
