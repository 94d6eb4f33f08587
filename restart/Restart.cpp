// The restart program. It lies beside the main program as "Restart.sec"; to start itself anew, the main program copies
// it to "Restart.exe", starts the copy hidden and ends. The copy waits for that end, starts the main program again from
// the same folder and ends itself, whatever happens.

#include <windows.h>
// Behind windows.h, whose types it uses.
#include <tlhelp32.h>

#include <string>

#include "win32/machine/Handles.h"

namespace {

using marlok::win32::FileHandle;
using marlok::win32::KernelHandle;

constexpr const wchar_t* programName = L"Marlok Backup.exe";

/// A main program that has not ended by then waits for its user; starting a second one would only bring a message.
constexpr ULONGLONG waitLimit = 60'000;  // milliseconds

/// What this program returns.
enum ExitCode : int {
    started = 0,
    stillRunning = 1,   ///< the main program did not end in time; nothing was started
    startFailed = 2,    ///< the system could not start it
    folderUnknown = 3,  ///< the system does not tell where this program lies
};

/// Full path of a process's program, by one and the same service for all processes: so two paths are comparable
/// whatever aliases they were started by. "" when it cannot be told.
std::wstring ImagePath(HANDLE process) {
    std::wstring path(32768, L'\0');
    auto length = static_cast<DWORD>(path.size());
    if (QueryFullProcessImageNameW(process, 0, path.data(), &length) == 0) {
        return {};
    }
    path.resize(length);
    return path;
}

bool SamePath(const std::wstring& a, const std::wstring& b) {
    return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(), static_cast<int>(b.size()), TRUE) ==
           CSTR_EQUAL;
}

/// A process that others still hold a handle of may be listed after its end.
bool HasEnded(HANDLE process) {
    return WaitForSingleObject(process, 0) == WAIT_OBJECT_0;
}

/// A running process of `program`; invalid when there is none.
KernelHandle FindRunning(const std::wstring& program) {
    const FileHandle listing(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = listing.IsValid() ? Process32FirstW(listing.Get(), &entry) : FALSE; more != 0;
         more = Process32NextW(listing.Get(), &entry)) {
        if (!SamePath(entry.szExeFile, programName)) {
            continue;
        }
        KernelHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE, FALSE, entry.th32ProcessID));
        if (process.IsValid() && SamePath(ImagePath(process.Get()), program) && !HasEnded(process.Get())) {
            return process;
        }
    }
    return {};
}

/// Waits until no process of `program` runs any more. False when one outlives the limit.
bool WaitForEnd(const std::wstring& program) {
    const ULONGLONG deadline = GetTickCount64() + waitLimit;
    for (;;) {
        const KernelHandle process = FindRunning(program);
        if (!process.IsValid()) {
            return true;
        }
        const ULONGLONG now = GetTickCount64();
        if (now >= deadline ||
            WaitForSingleObject(process.Get(), static_cast<DWORD>(deadline - now)) != WAIT_OBJECT_0) {
            return false;
        }
    }
}

bool Start(const std::wstring& program, const std::wstring& folder) {
    std::wstring commandLine = L"\"" + program + L"\"";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION information{};
    if (CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, folder.c_str(),
                       &startup, &information) == 0) {
        return false;
    }
    const KernelHandle process(information.hProcess);
    const KernelHandle thread(information.hThread);
    return true;
}

}  // namespace

int main() {
    const std::wstring own = ImagePath(GetCurrentProcess());
    const std::size_t folderEnd = own.find_last_of(L'\\');
    if (folderEnd == std::wstring::npos) {
        return folderUnknown;
    }
    const std::wstring folder = own.substr(0, folderEnd + 1);
    const std::wstring program = folder + programName;
    if (!WaitForEnd(program)) {
        return stillRunning;
    }
    return Start(program, folder) ? started : startFailed;
}
