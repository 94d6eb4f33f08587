#include "win32/machine/Copying.h"

#include <windows.h>

#include <exception>

#include "win32/machine/FileEntry.h"

namespace marlok::win32 {

namespace {

/// What a running copy needs on both sides of the kernel.
struct CopyCall {
    const CopyProgressRoutine& progress;
    bool told = false;
    std::exception_ptr thrown = nullptr;
};

/// An exception must not travel through the kernel's frames: it is kept, the copy is called off, and the exception goes
/// on from Copy.
DWORD CALLBACK OnCopyProgress(LARGE_INTEGER total, LARGE_INTEGER transferred, LARGE_INTEGER, LARGE_INTEGER, DWORD,
                              DWORD reason, HANDLE, HANDLE, LPVOID data) {
    auto& call = *static_cast<CopyCall*>(data);
    call.told = true;
    try {
        call.progress({static_cast<std::uint64_t>(total.QuadPart), static_cast<std::uint64_t>(transferred.QuadPart),
                       static_cast<CopyProgressInfo::Reason>(reason)});
    } catch (...) {
        call.thrown = std::current_exception();
        return PROGRESS_CANCEL;
    }
    return PROGRESS_CONTINUE;
}

/// There are systems that copy without telling: there the routine learns the start and the end, once the file is there.
void TellAfterwards(const std::wstring& copy, const CopyProgressRoutine& progress) {
    DirectoryEntry entry;
    if (EntryOf(copy, entry) != error::success) {
        return;  // taken away by somebody already; the copy itself was done
    }
    progress({entry.size, 0, CopyProgressInfo::Reason::streamSwitch});
    if (entry.size != 0) {
        progress({entry.size, entry.size, CopyProgressInfo::Reason::chunkFinished});
    }
}

}  // namespace

SystemError CopyFileTelling(const std::wstring& from, const std::wstring& to, std::uint32_t flags,
                            const CopyProgressRoutine& progress) {
    CopyCall call{progress};
    BOOL cancel = FALSE;
    const BOOL copied =
        CopyFileExW(from.c_str(), to.c_str(), progress ? &OnCopyProgress : nullptr, &call, &cancel, flags);
    const SystemError code = ResultOf(copied);
    if (call.thrown) {
        std::rethrow_exception(call.thrown);
    }
    if (code == error::success && progress && !call.told) {
        TellAfterwards(to, progress);
    }
    return code;
}

}  // namespace marlok::win32
