#include "tests/windows/Command.h"

#include <windows.h>

#include "win32/machine/Handles.h"

namespace marlok::test {

namespace {

/// What comes out of `pipe` until its last writer is gone.
std::string ReadAll(HANDLE pipe) {
    std::string all;
    char buffer[4096];
    DWORD count = 0;
    while (ReadFile(pipe, buffer, sizeof buffer, &count, nullptr) != 0 && count != 0) {
        all.append(buffer, count);
    }
    return all;
}

}  // namespace

CommandResult RunCommand(std::wstring commandLine) {
    CommandResult result;
    result.code = ~0UL;
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    win32::KernelHandle read;
    win32::KernelHandle write;
    if (CreatePipe(read.Receive(), write.Receive(), &inherited, 0) == 0) {
        return result;
    }
    SetHandleInformation(read.Get(), HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES | STARTF_USESHOWWINDOW;
    startup.wShowWindow = SW_HIDE;
    startup.hStdOutput = write.Get();
    PROCESS_INFORMATION information{};
    if (CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr, nullptr,
                       &startup, &information) == 0) {
        return result;
    }
    const win32::KernelHandle process(information.hProcess);
    const win32::KernelHandle thread(information.hThread);
    write.Reset();
    result.output = ReadAll(read.Get());
    WaitForSingleObject(process.Get(), INFINITE);
    GetExitCodeProcess(process.Get(), &result.code);
    return result;
}

}  // namespace marlok::test
