#include "fileops/VersionInfo.h"

namespace marlok {

namespace {

constexpr std::uint32_t family95 = 1;
constexpr std::uint32_t familyNT = 2;

}  // namespace

bool IsWindows95(SystemInfo& system) {
    VersionRecord v;
    return system.GetVersion(v) && v.platform == family95 && v.major == 4 && v.minor == 0;
}

bool IsWindows98(SystemInfo& system) {
    VersionRecord v;
    return system.GetVersion(v) && ((v.major == 4 && v.minor > 0) || (v.platform == family95 && v.major >= 5));
}

bool IsWindowsME(SystemInfo& system) {
    VersionRecord v;
    return system.GetVersion(v) && v.platform == family95 && v.major == 4 && v.minor == 90;
}

bool IsWindows2000(SystemInfo& system) {
    VersionRecord v;
    return system.GetVersion(v) && v.platform == familyNT && v.major == 5;
}

bool IsWindowsXP(SystemInfo& system) {
    VersionRecord v;
    return system.GetVersion(v) && v.platform == familyNT && v.major == 5 && v.minor == 1;
}

}  // namespace marlok
