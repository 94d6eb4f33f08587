// A library that has no business in a program: wherever it is loaded it leaves a file of its own name with ".loaded"
// beside itself. It has the functions that the program uses of the libraries it is laid down as, so that a program that
// is taken in goes on.

#include <windows.h>

#include <string>

namespace {

void LeaveTrace(HMODULE own) {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(own, path.data(), static_cast<DWORD>(path.size())));
    HANDLE trace = CreateFileW((path + L".loaded").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (trace != INVALID_HANDLE_VALUE) {
        CloseHandle(trace);
    }
}

}  // namespace

BOOL WINAPI DllMain(HINSTANCE own, DWORD reason, void* /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        LeaveTrace(own);
    }
    return TRUE;
}

extern "C" {

__declspec(dllexport) DWORD WINAPI GetFileVersionInfoSizeW(const wchar_t* /*path*/, DWORD* /*unused*/) {
    return 0;
}

__declspec(dllexport) BOOL WINAPI
    GetFileVersionInfoW(const wchar_t* /*path*/, DWORD /*unused*/, DWORD /*size*/, void* /*data*/) {
    return FALSE;
}

__declspec(dllexport) BOOL WINAPI
    VerQueryValueW(const void* /*block*/, const wchar_t* /*name*/, void** /*value*/, UINT* /*size*/) {
    return FALSE;
}

__declspec(dllexport) BOOL WINAPI InternetGetConnectedState(DWORD* /*flags*/, DWORD /*reserved*/) {
    return FALSE;
}

}  // extern "C"
