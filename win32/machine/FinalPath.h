#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/FileSystem.h"

namespace marlok::win32 {

/// FileSystem::FinalPath for a path as ToWidePath gives it.
[[nodiscard]] SystemError FindFinalPath(const std::wstring& path, std::wstring& finalPath);

/// FileSystem::Identify for a path as ToWidePath gives it.
[[nodiscard]] SystemError FindIdentity(const std::wstring& path, FileIdentity& identity);

/// A drive letter and the device behind it.
struct DriveDevice {
    std::wstring drive;   ///< "C:"
    std::wstring device;  ///< "\Device\HarddiskVolume3", or "\??\C:\Data" for a substituted drive
};

/// The letters of this session, in alphabetical order.
[[nodiscard]] std::vector<DriveDevice> DriveDevices();

/// A path by the kernel's own name of its device ("\Device\HarddiskVolume3\Data") as a path of one of `drives`, or of
/// the network ("\\server\share\x"). "" when no letter stands for the device.
[[nodiscard]] std::wstring FromDevicePath(std::wstring_view path, const std::vector<DriveDevice>& drives);

}  // namespace marlok::win32
