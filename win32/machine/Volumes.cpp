#include "win32/machine/Volumes.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "win32/machine/FileEntry.h"
#include "win32/machine/FinalPath.h"
#include "win32/machine/NoSystemBoxes.h"
#include "win32/machine/Wide.h"
#include "win32/machine/WidePath.h"

namespace marlok::win32 {

namespace {

bool IsMissing(SystemError code) {
    return code == error::fileNotFound || code == error::pathNotFound;
}

/// "\\server\share\" of a path into the network; "" for any other.
std::wstring ShareRoot(std::wstring_view path) {
    if (!path.starts_with(L"\\\\") || path.starts_with(L"\\\\?\\") || path.starts_with(L"\\\\.\\")) {
        return {};
    }
    const std::size_t server = path.find(L'\\', 2);
    if (server == std::wstring_view::npos) {
        return {};
    }
    const std::size_t share = std::min(path.find(L'\\', server + 1), path.size());
    return std::wstring(path.substr(0, share)) + L'\\';
}

bool HasLetter(std::wstring_view path) {
    return path.size() >= 2 && path[1] == L':';
}

std::wstring LetterRoot(std::wstring_view path) {
    return std::wstring(path.substr(0, 2)) + L'\\';
}

/// "X:\" when the letter stands for a folder in the network; "" for any other path. The name alone is looked at.
std::wstring NetworkLetterRoot(std::wstring_view path) {
    const std::wstring root = HasLetter(path) ? LetterRoot(path) : std::wstring();
    return !root.empty() && GetDriveTypeW(root.c_str()) == DRIVE_REMOTE ? root : std::wstring();
}

/// The folder above; "" when `path` has none. "C:\" is above "C:\Data".
std::wstring FolderAbove(const std::wstring& path) {
    if (path.size() < 2 || path[path.size() - 2] == L':') {
        return {};
    }
    const std::size_t last = path.find_last_of(L'\\', path.size() - 2);
    if (last == std::wstring::npos) {
        return {};
    }
    const bool root = last > 0 && path[last - 1] == L':';
    return path.substr(0, root ? last + 1 : last);
}

/// Where `path` really is, found by as much of it as exists; `path` itself when nothing of it says so.
std::wstring Resolved(const std::wstring& path) {
    for (std::wstring existing = path; !existing.empty(); existing = FolderAbove(existing)) {
        std::wstring found;
        const SystemError code = FindFinalPath(existing, found);
        if (code == error::success) {
            return found;
        }
        if (!IsMissing(code)) {
            break;
        }
    }
    return path;
}

/// The root of the volume that holds `path`, by the system's own answer.
SystemError AskForRoot(const std::wstring& path, std::wstring& root) {
    std::wstring wide;
    if (const SystemError code = ToWidePath(FromWide(path), wide)) {
        return code;
    }
    std::wstring buffer(std::max<std::size_t>(wide.size(), MAX_PATH) + 2, L'\0');
    if (GetVolumePathNameW(wide.c_str(), buffer.data(), static_cast<DWORD>(buffer.size())) == 0) {
        return LastError();
    }
    root = WithoutLongForm(buffer.substr(0, buffer.find(L'\0')));
    return error::success;
}

/// Servers are never asked where a volume begins: each folder on the way would wait for one that is gone.
SystemError FindRoot(const std::wstring& path, std::wstring& root) {
    const std::wstring plain = WithoutLongForm(path);
    root = NetworkLetterRoot(plain);
    root = root.empty() ? ShareRoot(plain) : root;
    if (!root.empty()) {
        return error::success;
    }
    const std::wstring resolved = Resolved(path);
    root = ShareRoot(resolved);
    const SystemError code = root.empty() ? AskForRoot(resolved, root) : error::success;
    if (code != error::success && HasLetter(plain)) {
        root = LetterRoot(plain);  // whatever is wrong with the drive: its own answer to the next question says it
        return error::success;
    }
    return code;
}

SystemError AskForRoom(const std::wstring& root, Volume& volume) {
    ULARGE_INTEGER room{};
    ULARGE_INTEGER total{};
    if (GetDiskFreeSpaceExW(root.c_str(), &room, &total, nullptr) == 0) {
        return LastError();
    }
    volume.freeBytes = room.QuadPart;
    volume.totalBytes = total.QuadPart;
    return error::success;
}

}  // namespace

SystemError FindVolume(const std::wstring& path, Volume& volume) {
    const NoSystemBoxes quiet;
    std::wstring root;
    if (const SystemError code = FindRoot(path, root)) {
        return code;
    }
    std::array<wchar_t, MAX_PATH + 1> label{};
    std::array<wchar_t, MAX_PATH + 1> fileSystem{};
    DWORD serial = 0;
    DWORD flags = 0;
    if (GetVolumeInformationW(root.c_str(), label.data(), static_cast<DWORD>(label.size()), &serial, nullptr, &flags,
                              fileSystem.data(), static_cast<DWORD>(fileSystem.size())) == 0) {
        return LastError();
    }
    volume = {FromWide(root), serial, FromWide(label.data()), FromWide(fileSystem.data()), flags};
    return AskForRoom(root, volume);
}

}  // namespace marlok::win32
