#include "win32/machine/Association.h"

#include <windows.h>
// Behind windows.h, whose types it uses.
#include <shlwapi.h>

#include <utility>

#include "win32/machine/Handles.h"

namespace marlok::win32 {

namespace {

/// Longer commands than any program registers; the call does not fill it with less than it has.
constexpr DWORD longestCommand = 4096;

SystemError Start(std::wstring command) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &started) ==
        0) {
        return GetLastError();
    }
    const KernelHandle process(started.hProcess);
    const KernelHandle thread(started.hThread);
    // Its window is to come up in front. Where the right has passed to another program meanwhile, it blinks instead.
    static_cast<void>(AllowSetForegroundWindow(started.dwProcessId));
    return error::success;
}

}  // namespace

std::wstring CommandFor(std::wstring command, const std::wstring& address) {
    const std::size_t place = command.find(L"%1");
    if (place == std::wstring::npos) {
        return command + L" \"" + address + L"\"";
    }
    return command.replace(place, 2, address);
}

SystemError OpenByScheme(const std::wstring& scheme, const std::wstring& address) {
    std::wstring command(longestCommand, L'\0');
    DWORD length = longestCommand;
    // As a protocol: what the user has chosen counts then, not what came with the system.
    const HRESULT found =
        AssocQueryStringW(ASSOCF_IS_PROTOCOL, ASSOCSTR_COMMAND, scheme.c_str(), L"open", command.data(), &length);
    if (FAILED(found)) {
        return error::fileNotFound;
    }
    command.resize(command.find(L'\0'));
    return command.empty() ? error::fileNotFound : Start(CommandFor(std::move(command), address));
}

}  // namespace marlok::win32
