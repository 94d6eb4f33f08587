#include "win32/machine/Win32Drives.h"

#include <windows.h>

#include <array>
#include <cstddef>
#include <string>

#include "win32/machine/NoSystemBoxes.h"
#include "win32/machine/Wide.h"

namespace marlok::win32 {

namespace {

constexpr unsigned letters = 26;

Drive::Kind KindOf(const wchar_t* root) {
    switch (GetDriveTypeW(root)) {
        case DRIVE_REMOVABLE:
            return Drive::Kind::removable;
        case DRIVE_FIXED:
            return Drive::Kind::fixed;
        case DRIVE_REMOTE:
            return Drive::Kind::network;
        case DRIVE_CDROM:
            return Drive::Kind::optical;
        case DRIVE_RAMDISK:
            return Drive::Kind::memory;
        default:
            return Drive::Kind::unknown;
    }
}

/// "" for a drive that does not answer: it is not ready, and that is all a list has to know.
std::string VolumeName(const wchar_t* root) {
    std::array<wchar_t, MAX_PATH + 1> name{};
    if (GetVolumeInformationW(root, name.data(), static_cast<DWORD>(name.size()), nullptr, nullptr, nullptr, nullptr,
                              0) == 0) {
        return {};
    }
    return FromWide(name.data());
}

}  // namespace

std::vector<Drive> Win32Drives::List() {
    const NoSystemBoxes quiet;
    const DWORD used = GetLogicalDrives();
    std::vector<Drive> drives;
    for (unsigned letter = 0; letter < letters; ++letter) {
        if ((used & (1U << letter)) == 0) {
            continue;
        }
        const std::wstring root = {static_cast<wchar_t>(L'A' + letter), L':', L'\\'};
        const Drive::Kind kind = KindOf(root.c_str());
        // A server that is switched off lets whoever asks it wait for half a minute.
        const bool asked = kind != Drive::Kind::network;
        drives.push_back({FromWide(root), kind, asked ? VolumeName(root.c_str()) : std::string()});
    }
    return drives;
}

}  // namespace marlok::win32
