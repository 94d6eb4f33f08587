// The restart program. It lies beside the main program as "Restart.sec"; to start itself anew, the main program copies
// it to "Restart.exe", starts the copy hidden and ends. The copy waits for that end, starts the main program again from
// the same folder and ends itself, whatever happens.
//
// Its arguments are the number of the process that asked for it and when that process was created, both decimal. The
// number alone might be another's by the time it is looked at. A handle would be as good, but only programs that
// inherit all the handles of their starter inherit one. Without arguments every process of the main program is waited
// for.

#include <windows.h>
// Behind windows.h, whose types it uses.
#include <tlhelp32.h>

#include <cstdint>
#include <cwchar>
#include <optional>
#include <string>
#include <string_view>

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

/// The process that asked to be started again.
struct Asker {
    DWORD id = 0;
    std::uint64_t created = 0;  ///< a file time
};

/// The asker that the command line names; nothing when it names none.
std::optional<Asker> AskerOf(const wchar_t* commandLine) {
    std::wstring_view rest(commandLine);
    const std::size_t programEnd = rest.starts_with(L'"') ? rest.find(L'"', 1) : rest.find_first_of(L" \t");
    if (programEnd == std::wstring_view::npos) {
        return std::nullopt;
    }
    unsigned long id = 0;
    unsigned long long created = 0;
    const std::wstring arguments(rest.substr(programEnd + 1));
    if (std::swscanf(arguments.c_str(), L"%lu %llu", &id, &created) != 2) {
        return std::nullopt;
    }
    return Asker{id, created};
}

bool WasCreatedAt(HANDLE process, std::uint64_t time) {
    FILETIME created{};
    FILETIME unused{};
    return GetProcessTimes(process, &created, &unused, &unused, &unused) != 0 &&
           ((std::uint64_t{created.dwHighDateTime} << 32) | created.dwLowDateTime) == time;
}

/// Waits until that process has ended. False when it outlives the limit.
bool WaitForEnd(const Asker& asker) {
    const KernelHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE, FALSE, asker.id));
    if (!process.IsValid() || !WasCreatedAt(process.Get(), asker.created)) {
        return true;  // it has ended already, and its number is nobody's or another's
    }
    return WaitForSingleObject(process.Get(), static_cast<DWORD>(waitLimit)) == WAIT_OBJECT_0;
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
    // Started by a program that the user had in front, this one may bring windows there; it has none, and passes the
    // right on. Without it the new windows would come up behind those of other programs.
    static_cast<void>(AllowSetForegroundWindow(information.dwProcessId));
    return true;
}

}  // namespace

int main() {
    // What lies beside this program is none of its libraries.
    static_cast<void>(SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32));
    const std::wstring own = ImagePath(GetCurrentProcess());
    const std::size_t folderEnd = own.find_last_of(L'\\');
    if (folderEnd == std::wstring::npos) {
        return folderUnknown;
    }
    const std::wstring folder = own.substr(0, folderEnd + 1);
    const std::wstring program = folder + programName;
    const std::optional<Asker> asker = AskerOf(GetCommandLineW());
    if (!(asker ? WaitForEnd(*asker) : WaitForEnd(program))) {
        return stillRunning;
    }
    return Start(program, folder) ? started : startFailed;
}
