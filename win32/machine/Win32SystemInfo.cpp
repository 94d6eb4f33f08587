#include "win32/machine/Win32SystemInfo.h"

#include <windows.h>
// Behind windows.h, whose types they use.
#include <lmcons.h>
#include <objbase.h>
#include <shlobj.h>
#include <wininet.h>
#include <winver.h>

#include <algorithm>
#include <cwchar>
#include <vector>

#include "text/Text.h"
#include "win32/machine/Handles.h"
#include "win32/machine/ModulePath.h"
#include "win32/machine/Wide.h"

namespace marlok::win32 {

namespace {

/// The text of `key` in the first language block of a version record; "" when there is none.
std::wstring VersionText(const std::vector<BYTE>& record, const wchar_t* key) {
    struct Language {
        WORD language;
        WORD codePage;
    };
    void* found = nullptr;
    UINT size = 0;
    if (VerQueryValueW(record.data(), L"\\VarFileInfo\\Translation", &found, &size) == 0 || size < sizeof(Language)) {
        return {};
    }
    const auto* language = static_cast<const Language*>(found);
    wchar_t path[64] = {};
    static_cast<void>(std::swprintf(path, std::size(path), L"\\StringFileInfo\\%04x%04x\\%ls", language->language,
                                    language->codePage, key));
    if (VerQueryValueW(record.data(), path, &found, &size) == 0 || size == 0) {
        return {};
    }
    const std::wstring_view text(static_cast<const wchar_t*>(found), size);
    return std::wstring(text.substr(0, text.find(L'\0')));  // the size may count the terminating zero
}

std::wstring SystemMessage(std::uint32_t code, DWORD language) {
    LocalText text;
    const DWORD length =
        FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                       nullptr, code, language, reinterpret_cast<wchar_t*>(text.Receive()), 0, nullptr);
    return length == 0 ? std::wstring() : std::wstring(text.Get(), length);
}

/// Keeps the machine on and, where programs are suspended with the screen off, this program going. Invalid where the
/// system does not know such requests.
KernelHandle RequestToStayAwake() {
    std::wstring reason = L"Files are being backed up.";
    REASON_CONTEXT context{};
    context.Version = POWER_REQUEST_CONTEXT_VERSION;
    context.Flags = POWER_REQUEST_CONTEXT_SIMPLE_STRING;
    context.Reason.SimpleReasonString = reason.data();
    HANDLE created = PowerCreateRequest(&context);
    KernelHandle request(created == INVALID_HANDLE_VALUE ? nullptr : created);
    if (request.IsValid()) {
        // Each holds by itself; a system that refuses one has the other, and the thread's state besides.
        static_cast<void>(PowerSetRequest(request.Get(), PowerRequestSystemRequired));
        static_cast<void>(PowerSetRequest(request.Get(), PowerRequestExecutionRequired));
    }
    return request;
}

}  // namespace

bool Win32SystemInfo::GetVersion(VersionRecord& version) {
    OSVERSIONINFOW info{};
    info.dwOSVersionInfoSize = sizeof info;
    if (GetVersionExW(&info) == 0) {
        return false;
    }
    version.major = info.dwMajorVersion;
    version.minor = info.dwMinorVersion;
    version.build = info.dwBuildNumber;
    version.platform = info.dwPlatformId;
    version.servicePack = FromWide(info.szCSDVersion);
    return true;
}

bool Win32SystemInfo::GetConnection(std::uint32_t& flags) {
    DWORD found = 0;
    const BOOL connected = InternetGetConnectedState(&found, 0);
    flags = found;
    return connected != 0;
}

std::string Win32SystemInfo::ProductName() {
    const std::wstring path = ModulePath();
    const DWORD size = GetFileVersionInfoSizeW(path.c_str(), nullptr);
    std::vector<BYTE> record(size);
    if (size == 0 || GetFileVersionInfoW(path.c_str(), 0, size, record.data()) == 0) {
        return {};
    }
    return FromWide(VersionText(record, L"ProductName"));
}

std::string Win32SystemInfo::WindowsFolder() {
    // On a terminal server the plain function would name a folder of the user's own.
    std::wstring folder(MAX_PATH, L'\0');
    const UINT length = GetSystemWindowsDirectoryW(folder.data(), static_cast<UINT>(folder.size()));
    folder.resize(length < folder.size() ? length : 0);
    if (folder.size() > 3 && folder.back() == L'\\') {
        folder.pop_back();
    }
    return FromWide(folder);
}

std::string Win32SystemInfo::ComputerName() {
    std::wstring name(MAX_COMPUTERNAME_LENGTH + 1, L'\0');
    auto length = static_cast<DWORD>(name.size());
    if (GetComputerNameW(name.data(), &length) == 0) {
        return {};
    }
    return FromWide(name.substr(0, length));
}

std::string Win32SystemInfo::UserName() {
    std::wstring name(UNLEN + 1, L'\0');
    auto length = static_cast<DWORD>(name.size());
    if (GetUserNameW(name.data(), &length) == 0) {
        return {};
    }
    return FromWide(name.substr(0, name.find(L'\0')));  // the length counts the terminating zero
}

std::string Win32SystemInfo::ProfileFolder() {
    wchar_t* path = nullptr;
    const HRESULT result = SHGetKnownFolderPath(FOLDERID_Profile, KF_FLAG_DEFAULT, nullptr, &path);
    std::string folder = SUCCEEDED(result) ? FromWide(path) : std::string();
    CoTaskMemFree(path);
    if (folder.size() > 3 && folder.back() == '\\') {
        folder.pop_back();
    }
    return folder;
}

std::string Win32SystemInfo::FromCodePage(std::string_view bytes) {
    // The conversion counts in 31 bits; larger texts go through it line by line, many lines at a time.
    constexpr std::size_t largest = std::size_t{1} << 30;
    std::string text;
    while (!bytes.empty()) {
        std::size_t part = std::min(bytes.size(), largest);
        if (const std::size_t line = bytes.rfind('\n', part - 1);
            part < bytes.size() && line != std::string_view::npos) {
            part = line + 1;
        }
        const int size = static_cast<int>(part);
        std::wstring wide(part, L'\0');  // never more characters than bytes
        const int length = MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, wide.data(), size);
        wide.resize(static_cast<std::size_t>(length));
        text += FromWide(wide);
        bytes.remove_prefix(part);
    }
    return text;
}

std::string Win32SystemInfo::ErrorText(std::uint32_t code) {
    std::wstring message = SystemMessage(code, MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US));
    if (message.empty()) {
        message = SystemMessage(code, 0);  // a system without English messages
    }
    std::string text = FromWide(message);
    // A few messages have line breaks in their middle.
    std::replace(text.begin(), text.end(), '\n', ' ');
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    return std::string(text::Trim(text, " \t"));
}

void Win32SystemInfo::KeepAwake(bool on) {
    stayAwake_ = on ? RequestToStayAwake() : KernelHandle();  // a request ends with its handle
    // The answer is the state before; a system that knows no sleep returns 0 and needs nothing.
    static_cast<void>(SetThreadExecutionState(on ? ES_CONTINUOUS | ES_SYSTEM_REQUIRED : ES_CONTINUOUS));
}

}  // namespace marlok::win32
