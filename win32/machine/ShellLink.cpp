#include "win32/machine/ShellLink.h"

#include <windows.h>
// Behind windows.h, whose types it uses.
#include <shlobj.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "win32/machine/Automation.h"
#include "win32/machine/Wide.h"

namespace marlok::win32 {

namespace {

/// "C:\Program.exe,2": the file, and the index of the icon in it (0 when none is named).
std::pair<std::wstring, int> SplitIconLocation(const std::string& location) {
    const std::size_t comma = location.rfind(',');
    if (comma == std::string::npos) {
        return {ToWide(location), 0};
    }
    int index = 0;
    const char* const end = location.data() + location.size();
    const auto parsed = std::from_chars(
        location.data() + std::min(location.find_first_not_of(' ', comma + 1), location.size()), end, index);
    return {ToWide(location.substr(0, comma)), parsed.ec == std::errc() ? index : 0};
}

HRESULT Fill(IShellLinkW& link, const Shortcut& shortcut) {
    HRESULT result = link.SetPath(ToWide(shortcut.targetPath).c_str());
    if (SUCCEEDED(result)) {
        result = link.SetShowCmd(shortcut.windowStyle);
    }
    if (SUCCEEDED(result)) {
        const auto [file, index] = SplitIconLocation(shortcut.iconLocation);
        result = link.SetIconLocation(file.c_str(), index);
    }
    if (SUCCEEDED(result)) {
        result = link.SetDescription(ToWide(shortcut.description).c_str());
    }
    if (SUCCEEDED(result)) {
        result = link.SetWorkingDirectory(ToWide(shortcut.workingDirectory).c_str());
    }
    return result;
}

HRESULT Fill(Automation& link, const Shortcut& shortcut) {
    HRESULT result = link.Put(L"TargetPath", Variant(ToWide(shortcut.targetPath)));
    if (SUCCEEDED(result)) {
        result = link.Put(L"WindowStyle", Variant(shortcut.windowStyle));
    }
    if (SUCCEEDED(result)) {
        result = link.Put(L"IconLocation", Variant(ToWide(shortcut.iconLocation)));
    }
    if (SUCCEEDED(result)) {
        result = link.Put(L"Description", Variant(ToWide(shortcut.description)));
    }
    if (SUCCEEDED(result)) {
        result = link.Put(L"WorkingDirectory", Variant(ToWide(shortcut.workingDirectory)));
    }
    return result;
}

bool FitsCodePage(const std::string& text) {
    const std::wstring wide = ToWide(text);
    const bool ascii = std::all_of(wide.begin(), wide.end(), [](wchar_t unit) { return unit < 0x80; });
    if (ascii) {
        return true;
    }
    if (GetACP() == CP_UTF8) {
        return true;  // a code page that holds everything, and takes no report of a default character
    }
    BOOL replaced = FALSE;
    const int size = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide.data(), static_cast<int>(wide.size()),
                                         nullptr, 0, nullptr, &replaced);
    return size > 0 && replaced == FALSE;
}

}  // namespace

bool FitsCodePage(const Shortcut& shortcut) {
    const std::array texts = {&shortcut.path, &shortcut.targetPath, &shortcut.iconLocation, &shortcut.description,
                              &shortcut.workingDirectory};
    return std::all_of(texts.begin(), texts.end(), [](const std::string* text) { return FitsCodePage(*text); });
}

SystemError SaveShortcutByScriptHost(const Shortcut& shortcut) {
    Automation shell;
    HRESULT result = shell.Create(L"WScript.Shell");
    if (FAILED(result)) {
        return ToSystemError(result);
    }
    std::vector<Variant> path;
    path.emplace_back(ToWide(shortcut.path));
    Automation link;
    result = shell.CallForObject(L"CreateShortcut", std::move(path), link);
    if (SUCCEEDED(result)) {
        result = Fill(link, shortcut);
    }
    if (SUCCEEDED(result)) {
        Variant none;
        result = link.Call(L"Save", {}, none);
    }
    return ToSystemError(result);
}

SystemError SaveShortcutByLinkObject(const Shortcut& shortcut) {
    ComPtr<IShellLinkW> link;
    HRESULT result =
        CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, link.ReceiveVoid());
    if (SUCCEEDED(result)) {
        result = Fill(*link.Get(), shortcut);
    }
    ComPtr<IPersistFile> file;
    if (SUCCEEDED(result)) {
        result = link->QueryInterface(IID_IPersistFile, file.ReceiveVoid());
    }
    if (SUCCEEDED(result)) {
        result = file->Save(ToWide(shortcut.path).c_str(), TRUE);
    }
    return ToSystemError(result);
}

}  // namespace marlok::win32
