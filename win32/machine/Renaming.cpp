#include "win32/machine/Renaming.h"

#include <windows.h>

#include <cstddef>
#include <cstring>
#include <vector>

#include "win32/machine/FileEntry.h"
#include "win32/machine/HandleInfo.h"
#include "win32/machine/Handles.h"
#include "win32/machine/Wide.h"

namespace marlok::win32 {

namespace {

/// The request to rename, as the kernel lays it out: this compiler's headers know it without the flags.
struct RenameRequest {
    DWORD flags;
    HANDLE folder;  ///< the new name is relative to; null for a full path
    DWORD nameLength;
    wchar_t name[1];
};
static_assert(offsetof(RenameRequest, name) == 20 && sizeof(HANDLE) == 8);

constexpr DWORD replaceOpenFile = 0x1 | 0x2;  // replace; as POSIX systems do

bool IsPlainFile(const std::wstring& path) {
    constexpr DWORD others = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_READONLY;
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & others) == 0;
}

/// Renames over a file that somebody has open: whoever lets others delete it keeps what he has, the name is free. False
/// when that cannot be done.
bool RenameOverOpenFile(const std::wstring& from, const std::wstring& to, bool writeThrough) {
    // With a handle that writes through, the new name is on the device when the call returns.
    const DWORD flags = FILE_FLAG_OPEN_REPARSE_POINT | (writeThrough ? FILE_FLAG_WRITE_THROUGH : 0);
    const FileHandle handle(CreateFileW(from.c_str(), DELETE | SYNCHRONIZE,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                        flags, nullptr));
    if (!handle.IsValid()) {
        return false;
    }
    RenameRequest request{};
    request.flags = replaceOpenFile;
    request.nameLength = static_cast<DWORD>(to.size() * sizeof(wchar_t));
    std::vector<std::byte> bytes(sizeof request + request.nameLength);
    std::memcpy(bytes.data(), &request, sizeof request);
    std::memcpy(bytes.data() + offsetof(RenameRequest, name), to.data(), request.nameLength);
    return SetFileInformationByHandle(handle.Get(), handleclass::renameEx, bytes.data(),
                                      static_cast<DWORD>(bytes.size())) != 0;
}

/// True when the error may come from a program that has the file open, and the newer way is worth trying. Nothing but
/// plain files is ever replaced by it: it would replace an empty folder, too.
bool MayBeOpen(SystemError code, const std::wstring& from, const std::wstring& to) {
    return code == error::accessDenied && HasNewHandleClasses() && IsPlainFile(to) && IsPlainFile(from);
}

/// What a file is told by while it goes from name to name.
using Facts = WIN32_FILE_ATTRIBUTE_DATA;

bool Look(const std::wstring& path, Facts& facts) {
    return GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &facts) != 0;
}

SystemError CheckReplaceable(const std::wstring& path, Facts& facts) {
    if (!Look(path, facts)) {
        return LastError();
    }
    constexpr DWORD refused = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY;
    return (facts.dwFileAttributes & refused) != 0 ? error::accessDenied : error::success;
}

bool IsSame(const Facts& one, const Facts& other) {
    return CompareFileTime(&one.ftLastWriteTime, &other.ftLastWriteTime) == 0 &&
           one.nFileSizeHigh == other.nFileSizeHigh && one.nFileSizeLow == other.nFileSizeLow;
}

/// After a replacement that failed with `code`: gives the old file its name back where it has lost it. The error to
/// report.
SystemError TakeBack(const Replacement& files, const Facts& old, SystemError code) {
    Facts now{};
    if (Look(files.replaced, now) || !Look(files.backup, now) || !IsSame(now, old)) {
        return code;
    }
    const BOOL back = MoveFileExW(files.backup.c_str(), files.replaced.c_str(), 0);
    return back != 0 ? error::replacementNotMoved : error::replacedMovedAway;
}

/// Where the system's own call cannot do it. The new file takes nothing over from the old one.
SystemError ReplaceByMoves(const Replacement& files) {
    if (MoveFileExW(files.replaced.c_str(), files.backup.c_str(), MOVEFILE_REPLACE_EXISTING) == 0) {
        return error::replacedKept;
    }
    return MoveFileExW(files.replacement.c_str(), files.replaced.c_str(), 0) != 0 ? error::success
                                                                                  : error::replacedMovedAway;
}

}  // namespace

SystemError MoveOne(const std::wstring& from, const std::wstring& to, std::uint32_t flags) {
    const DWORD asked = flags & (MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
    const SystemError code = ResultOf(MoveFileExW(from.c_str(), to.c_str(), asked));
    if ((asked & MOVEFILE_REPLACE_EXISTING) == 0 || !MayBeOpen(code, from, to)) {
        return code;
    }
    return RenameOverOpenFile(from, to, (asked & MOVEFILE_WRITE_THROUGH) != 0) ? error::success : code;
}

SystemError ReplaceOne(const Replacement& files) {
    // There are systems that let a file take the place of a folder.
    Facts young{};
    Facts old{};
    if (const SystemError code = CheckReplaceable(files.replaced, old)) {
        return code;
    }
    if (const SystemError code = CheckReplaceable(files.replacement, young)) {
        return code;
    }
    SystemError code = ResultOf(ReplaceFileW(files.replaced.c_str(), files.replacement.c_str(), files.backup.c_str(),
                                             REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr));
    // There are systems whose call cannot take a long path, and file systems that do not know it.
    if (code == error::invalidName || IsNotThere(code)) {
        code = ReplaceByMoves(files);
    }
    return code == error::success ? code : TakeBack(files, old, code);
}

}  // namespace marlok::win32
