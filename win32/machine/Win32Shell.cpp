#include "win32/machine/Win32Shell.h"

#include <windows.h>
// Behind windows.h, whose types they use.
#include <shellapi.h>
#include <shlobj.h>

#include "win32/machine/Association.h"
#include "win32/machine/Automation.h"
#include "win32/machine/ShellLink.h"
#include "win32/machine/Wide.h"

namespace marlok::win32 {

namespace {

/// The shell's codes for names it cannot use and for an operation called off before its end.
constexpr int invalidFiles = 0x7C;
constexpr int operationCancelled = ERROR_CANCELLED;

/// What a failed call to open a file comes to. The shell has codes of its own; it does not always set the system's.
SystemError OpenError(const SHELLEXECUTEINFOW& request, SystemError code) {
    if (code != error::success) {
        return code;
    }
    const auto own = reinterpret_cast<INT_PTR>(request.hInstApp);
    switch (own) {
        case SE_ERR_FNF:
        case SE_ERR_PNF:
        case SE_ERR_ACCESSDENIED:
        case SE_ERR_OOM:
            return static_cast<SystemError>(own);  // numbered as the system's
        case SE_ERR_SHARE:
            return error::sharingViolation;
        case SE_ERR_ASSOCINCOMPLETE:
        case SE_ERR_NOASSOC:
            return ERROR_NO_ASSOCIATION;
        case SE_ERR_DLLNOTFOUND:
            return ERROR_DLL_NOT_FOUND;
        case SE_ERR_DDETIMEOUT:
        case SE_ERR_DDEFAIL:
        case SE_ERR_DDEBUSY:
            return ERROR_DDE_FAIL;
        default:
            return error::ioDevice;
    }
}

std::wstring DesktopByScriptHost() {
    Automation shell;
    Automation folders;
    if (FAILED(shell.Create(L"WScript.Shell")) || FAILED(shell.GetObjectProperty(L"SpecialFolders", folders))) {
        return {};
    }
    std::vector<Variant> name;
    name.emplace_back(std::wstring_view(L"Desktop"));
    Variant path;
    if (FAILED(folders.Call(L"Item", std::move(name), path)) || path.Get().vt != VT_BSTR) {
        return {};
    }
    return {path.Get().bstrVal, SysStringLen(path.Get().bstrVal)};
}

std::wstring DesktopByKnownFolder() {
    wchar_t* path = nullptr;
    const HRESULT result = SHGetKnownFolderPath(FOLDERID_Desktop, KF_FLAG_DEFAULT, nullptr, &path);
    std::wstring folder = SUCCEEDED(result) ? std::wstring(path) : std::wstring();
    CoTaskMemFree(path);
    return folder;
}

}  // namespace

int Win32Shell::Perform(const ShellFileOperation& operation) {
    if (operation.from.empty() || HoldsZero(operation.from) || HoldsZero(operation.to)) {
        return invalidFiles;  // a zero would end the name, and the shell would work on another one
    }
    // The names are lists for the shell: each ends with a second zero.
    const std::wstring from = ToWide(operation.from) + L'\0';
    const std::wstring to = ToWide(operation.to) + L'\0';
    SHFILEOPSTRUCTW request{};
    request.wFunc = static_cast<UINT>(operation.kind);
    request.pFrom = from.c_str();
    request.pTo = operation.kind == ShellFileOperation::Kind::remove ? nullptr : to.c_str();
    // "Silent" hides the progress only. An error box would keep an unattended run waiting for ever; the caller reports.
    request.fFlags = static_cast<FILEOP_FLAGS>(operation.flags | FOF_NOERRORUI);
    const int result = SHFileOperationW(&request);
    // The shell calls an operation that was broken off half-way a success.
    return result == 0 && request.fAnyOperationsAborted != FALSE ? operationCancelled : result;
}

SystemError Win32Shell::Open(const OpenRequest& request) {
    if (request.path.empty()) {
        return error::fileNotFound;  // the shell would open the folder instead
    }
    if (HoldsZero(request.path) || HoldsZero(request.parameters) || HoldsZero(request.folder)) {
        return error::invalidName;
    }
    const std::wstring path = ToWide(request.path);
    const std::wstring parameters = ToWide(request.parameters);
    const std::wstring folder = ToWide(request.folder);
    SHELLEXECUTEINFOW open{};
    open.cbSize = sizeof open;
    // Errors are the caller's to tell. The call ends when the file is open: this program may end right behind it.
    open.fMask = SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC;
    open.hwnd = owner_();
    open.lpVerb = L"open";
    open.lpFile = path.c_str();
    open.lpParameters = parameters.empty() ? nullptr : parameters.c_str();
    open.lpDirectory = folder.empty() ? nullptr : folder.c_str();
    open.nShow = request.showMode;
    SetLastError(ERROR_SUCCESS);
    return ShellExecuteExW(&open) != 0 ? error::success : OpenError(open, GetLastError());
}

SystemError Win32Shell::OpenAddress(const std::string& address) {
    // The browser is what pages of the web are opened with; files that end in ".html" may be an editor's.
    return HoldsZero(address) ? error::invalidName : OpenByScheme(L"http", ToWide(address));
}

std::string Win32Shell::DesktopFolder() {
    std::wstring folder = DesktopByScriptHost();
    if (folder.empty()) {
        folder = DesktopByKnownFolder();
    }
    if (folder.size() > 3 && folder.back() == L'\\') {
        folder.pop_back();
    }
    return FromWide(folder);
}

SystemError Win32Shell::SaveShortcut(const Shortcut& shortcut) {
    if (HoldsZero(shortcut.path)) {
        return error::invalidName;
    }
    // The script host may be switched off by policy; the link object then writes the same file.
    if (FitsCodePage(shortcut) && SaveShortcutByScriptHost(shortcut) == error::success) {
        return error::success;
    }
    return SaveShortcutByLinkObject(shortcut);
}

}  // namespace marlok::win32
