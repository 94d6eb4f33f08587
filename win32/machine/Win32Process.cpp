#include "win32/machine/Win32Process.h"

#include <windows.h>

#include <algorithm>

#include "win32/machine/Handles.h"
#include "win32/machine/ModulePath.h"
#include "win32/machine/Wide.h"
#include "win32/machine/WidePath.h"

namespace marlok::win32 {

namespace {

/// One instance for the whole machine: a scheduler starts programs in a session of its own, and two instances would
/// write the same command file and the same logs.
constexpr const wchar_t* claimName = L"Global\\Marlok Backup Utility";

/// `path` up to its last "\"; the root of a drive keeps it.
std::wstring FolderOf(const std::wstring& path) {
    const std::size_t end = path.find_last_of(L'\\');
    if (end == std::wstring::npos) {
        return {};
    }
    const bool root = end == 2 && path[1] == L':';
    return path.substr(0, root ? end + 1 : end);
}

void WriteToConsole(HANDLE console, const std::wstring& text) {
    DWORD written = 0;
    // There is nowhere left to report that standard error fails.
    static_cast<void>(WriteConsoleW(console, text.data(), static_cast<DWORD>(text.size()), &written, nullptr));
}

bool IsConsole(HANDLE handle) {
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0;
}

/// A program with windows is given no console by a command prompt; that of the prompt itself can be joined.
void WriteToParentConsole(const std::wstring& text) {
    if (AttachConsole(ATTACH_PARENT_PROCESS) == 0) {
        return;  // started without any
    }
    const FileHandle console(CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                         nullptr, OPEN_EXISTING, 0, nullptr));
    if (console.IsValid()) {
        WriteToConsole(console.Get(), text);
    }
    FreeConsole();
}

}  // namespace

std::wstring_view ArgumentsOf(std::wstring_view commandLine) {
    const bool quoted = !commandLine.empty() && commandLine.front() == L'"';
    const std::size_t end = quoted ? commandLine.find(L'"', 1) : commandLine.find_first_of(L" \t");
    if (end == std::wstring_view::npos) {
        return {};
    }
    commandLine.remove_prefix(quoted ? end + 1 : end);
    commandLine.remove_prefix(std::min(commandLine.find_first_not_of(L" \t"), commandLine.size()));
    return commandLine;
}

Win32Process::~Win32Process() {
    if (claim_ != nullptr) {
        CloseHandle(claim_);
    }
}

std::string Win32Process::Arguments() {
    return FromWide(ArgumentsOf(GetCommandLineW()));
}

std::string Win32Process::ProgramFolder() {
    return FromWide(FolderOf(ModulePath()));
}

std::string Win32Process::CurrentFolder() {
    std::wstring folder(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data());
        if (length < folder.size()) {
            folder.resize(length);
            return FromWide(folder);
        }
        folder.resize(length);
    }
}

bool Win32Process::ClaimSingleInstance() {
    if (claim_ != nullptr) {
        return true;
    }
    KernelHandle mutex(CreateMutexW(nullptr, FALSE, claimName));
    // A mutex that may not even be opened belongs to an instance with higher rights.
    if (!mutex.IsValid() || GetLastError() == ERROR_ALREADY_EXISTS) {
        return false;
    }
    claim_ = mutex.Release();
    return true;
}

std::uint32_t Win32Process::ProcessId() {
    return GetCurrentProcessId();
}

std::string Win32Process::Identification() {
    FILETIME created{};
    FILETIME unused{};
    // The call cannot fail for a program's own process; the time 0 would be nobody's.
    GetProcessTimes(GetCurrentProcess(), &created, &unused, &unused, &unused);
    const std::uint64_t time = (std::uint64_t{created.dwHighDateTime} << 32) | created.dwLowDateTime;
    return std::to_string(GetCurrentProcessId()) + " " + std::to_string(time);
}

SystemError Win32Process::StartHidden(const std::string& programPath, const std::string& arguments) {
    if (HoldsZero(programPath) || HoldsZero(arguments)) {
        return error::invalidName;
    }
    const std::wstring path = ToWide(programPath);
    std::wstring commandLine = L"\"" + path + L"\"" + (arguments.empty() ? L"" : L" " + ToWide(arguments));
    const std::wstring folder = FolderOf(path);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = SW_HIDE;
    PROCESS_INFORMATION started{};
    if (CreateProcessW(path.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                       folder.empty() ? nullptr : folder.c_str(), &startup, &started) == 0) {
        return LastError();
    }
    const KernelHandle process(started.hProcess);
    const KernelHandle thread(started.hThread);
    lastStarted_ = started.dwProcessId;
    return error::success;
}

void Win32Process::AllowForeground() {
    if (lastStarted_ != 0) {
        // Fails for a program that is not in front itself, and has nothing to give away then.
        static_cast<void>(AllowSetForegroundWindow(lastStarted_));
    }
}

void Win32Process::WriteError(const std::string& line) {
    const std::string text = line + "\r\n";
    HANDLE handle = GetStdHandle(STD_ERROR_HANDLE);
    if (handle == nullptr || handle == INVALID_HANDLE_VALUE) {
        WriteToParentConsole(ToWide(text));
    } else if (IsConsole(handle)) {
        WriteToConsole(handle, ToWide(text));
    } else {
        DWORD written = 0;
        static_cast<void>(WriteFile(handle, text.data(), static_cast<DWORD>(text.size()), &written, nullptr));
    }
}

}  // namespace marlok::win32
