#include "tests/windows/WineSide.h"

#include <windows.h>

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
    // A program of the host has no handles here. What stands in their place is left over from calls before this one,
    // and closing it would close somebody else's.
    return CreateProcessW(path.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                          &information) != 0;
}

}  // namespace marlok::test
