#include "tests/windows/WineSide.h"

#include <windows.h>

#include "win32/machine/Handles.h"

namespace marlok::test {

namespace {

template <class Function>
Function Exported(const wchar_t* module, const char* name) {
    // By way of a plain function pointer, as every function may be cast.
    return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(GetProcAddress(GetModuleHandleW(module), name)));
}

}  // namespace

bool IsWine() {
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

std::string HostPath(const std::wstring& path) {
    const auto convert = Exported<char*(CDECL*)(const wchar_t*)>(L"kernel32.dll", "wine_get_unix_file_name");
    if (convert == nullptr) {
        return {};
    }
    char* name = convert(path.c_str());
    const std::string converted = name == nullptr ? "" : name;
    HeapFree(GetProcessHeap(), 0, name);
    return converted;
}

bool StartOnHost(const std::wstring& program, const std::wstring& arguments) {
    const std::wstring path = L"\\\\?\\unix\\bin\\" + program;
    std::wstring commandLine = program + L" " + arguments;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION information{};
    if (CreateProcessW(path.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                       &information) == 0) {
        return false;
    }
    const win32::KernelHandle process(information.hProcess);
    const win32::KernelHandle thread(information.hThread);
    return true;
}

}  // namespace marlok::test
