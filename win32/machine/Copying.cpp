#include "win32/machine/Copying.h"

#include <windows.h>

#include <exception>
#include <optional>

#include "win32/machine/FileEntry.h"
#include "win32/machine/Handles.h"

namespace marlok::win32 {

namespace {

/// What a running copy needs on both sides of the kernel.
struct CopyCall {
    const CopyProgressRoutine& progress;
    std::optional<CopyProgressInfo> last = {};  ///< what the system told last; nothing when it does not tell
    std::optional<std::uint64_t> copied = {};   ///< the size of what was copied, where it was asked for
    std::exception_ptr thrown = nullptr;
};

/// An exception must not travel through the kernel's frames: it is kept, the copy is called off, and the exception goes
/// on from Copy.
DWORD CALLBACK OnCopyProgress(LARGE_INTEGER total, LARGE_INTEGER transferred, LARGE_INTEGER, LARGE_INTEGER, DWORD,
                              DWORD reason, HANDLE, HANDLE, LPVOID data) {
    auto& call = *static_cast<CopyCall*>(data);
    call.last = {static_cast<std::uint64_t>(total.QuadPart), static_cast<std::uint64_t>(transferred.QuadPart),
                 static_cast<CopyProgressInfo::Reason>(reason)};
    try {
        const bool goesOn = !call.progress || call.progress(*call.last) == CopyAnswer::goOn;
        return goesOn ? PROGRESS_CONTINUE : PROGRESS_CANCEL;
    } catch (...) {
        call.thrown = std::current_exception();
        return PROGRESS_CANCEL;
    }
}

/// The size of what `path` leads to; nothing when it cannot be found out.
std::optional<std::uint64_t> SizeOf(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) == 0) {
        return std::nullopt;
    }
    if ((data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
        return Join(data.nFileSizeHigh, data.nFileSizeLow);
    }
    const FileHandle handle = OpenTarget(path);  // what was asked above is the link itself
    LARGE_INTEGER size{};
    if (!handle.IsValid() || GetFileSizeEx(handle.Get(), &size) == 0) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(size.QuadPart);
}

/// Success when all bytes of a copy that has not failed are there. There are systems that take a source they can read
/// no further for one that ends there. Where the system has counted up to the end nothing more is asked.
SystemError CheckWhole(const std::wstring& from, const std::wstring& to, CopyCall& call) {
    if (call.last && call.last->totalTransferred >= call.last->totalFileSize) {
        return error::success;
    }
    call.copied = SizeOf(to);
    const std::optional<std::uint64_t> wanted = call.copied ? SizeOf(from) : std::nullopt;
    // What somebody has taken away meanwhile says nothing of the copy.
    return call.copied && wanted && *call.copied < *wanted ? error::readFault : error::success;
}

/// There are systems that copy without telling: there the routine learns the start and the end, once the file is there.
/// Calling the copy off takes the file away again.
SystemError TellAfterwards(const std::wstring& copy, const CopyCall& call) {
    if (!call.copied) {
        return error::success;  // taken away by somebody already; the copy itself was done
    }
    const std::uint64_t size = *call.copied;
    CopyAnswer answer = call.progress({size, 0, CopyProgressInfo::Reason::streamSwitch});
    if (answer == CopyAnswer::goOn && size != 0) {
        answer = call.progress({size, size, CopyProgressInfo::Reason::chunkFinished});
    }
    if (answer == CopyAnswer::goOn) {
        return error::success;
    }
    // Only an open handle in the way can keep it, as it would keep a copy that the system calls off.
    SetFileAttributesW(copy.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileW(copy.c_str());
    return error::requestAborted;
}

}  // namespace

SystemError CopyFileTelling(const std::wstring& from, const std::wstring& to, std::uint32_t flags,
                            const CopyProgressRoutine& progress) {
    CopyCall call{progress};
    BOOL cancel = FALSE;
    const BOOL copied = CopyFileExW(from.c_str(), to.c_str(), &OnCopyProgress, &call, &cancel, flags);
    SystemError code = ResultOf(copied);
    if (call.thrown) {
        std::rethrow_exception(call.thrown);
    }
    if (code == error::success) {
        code = CheckWhole(from, to, call);
    }
    if (code == error::success && progress && !call.last) {
        code = TellAfterwards(to, call);
    }
    return code;
}

}  // namespace marlok::win32
