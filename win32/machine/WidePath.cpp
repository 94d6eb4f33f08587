#include "win32/machine/WidePath.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <vector>

#include "win32/machine/Wide.h"

namespace marlok::win32 {

namespace {

/// Windows itself ends at 260 characters with the terminating zero; a folder must leave room for an 8.3 name, and a
/// listing adds "\*".
constexpr std::size_t usualLimit = 240;

constexpr std::wstring_view longForm = L"\\\\?\\";
constexpr std::wstring_view longNetworkForm = L"\\\\?\\UNC\\";

bool IsLetter(wchar_t unit) {
    return (unit >= L'A' && unit <= L'Z') || (unit >= L'a' && unit <= L'z');
}

bool HasDrive(std::wstring_view path) {
    return path.size() >= 3 && IsLetter(path[0]) && path[1] == L':' && path[2] == L'\\';
}

bool IsNetworkPath(std::wstring_view path) {
    return path.size() > 2 && path.substr(0, 2) == L"\\\\" && path[2] != L'\\' && path[2] != L'?' && path[2] != L'.';
}

bool IsDevicePath(std::wstring_view path) {
    return path.size() >= 4 && (path.substr(0, 4) == longForm || path.substr(0, 4) == L"\\\\.\\");
}

/// The components behind the drive or the two backslashes. A backslash at the very end adds no component.
std::vector<std::wstring_view> Components(std::wstring_view path) {
    std::wstring_view rest = path.substr(HasDrive(path) ? 3 : 2);
    std::vector<std::wstring_view> found;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(L'\\'), rest.size());
        found.push_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return found;
}

bool HasWildcard(std::wstring_view component) {
    return component.find_first_of(L"*?") != std::wstring_view::npos;
}

/// The "\\?\" form is taken literally: it must hold nothing that Windows would have to resolve first.
bool IsPlain(std::wstring_view path, const std::vector<std::wstring_view>& components) {
    return path.find(L'/') == std::wstring_view::npos &&
           std::none_of(components.begin(), components.end(), [](std::wstring_view component) {
               return component.empty() || component == L"." || component == L"..";
           });
}

bool IsAltered(std::wstring_view component) {
    return !component.empty() && (component.back() == L'.' || component.back() == L' ' || IsDeviceName(component));
}

bool NeedsLongForm(std::wstring_view path, const std::vector<std::wstring_view>& components) {
    if (path.size() >= usualLimit) {
        return true;
    }
    const bool wildcardLast = !components.empty() && HasWildcard(components.back());
    return std::any_of(components.begin(), components.end() - (wildcardLast ? 1 : 0), IsAltered);
}

std::wstring WithLongForm(std::wstring_view path) {
    if (HasDrive(path)) {
        return std::wstring(longForm).append(path);
    }
    return std::wstring(longNetworkForm).append(path.substr(2));
}

/// A relative path counts with the folder it is relative to.
bool IsLong(const std::wstring& path) {
    const bool absolute = HasDrive(path) || IsNetworkPath(path);
    return path.size() + (absolute ? 0 : GetCurrentDirectoryW(0, nullptr)) >= usualLimit;
}

SystemError FullPath(const std::wstring& path, std::wstring& full) {
    std::wstring buffer(path.size() + MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetFullPathNameW(path.c_str(), static_cast<DWORD>(buffer.size()), buffer.data(), nullptr);
        if (length == 0) {
            return LastError();
        }
        if (length < buffer.size()) {
            buffer.resize(length);
            full = std::move(buffer);
            return error::success;
        }
        buffer.resize(length);
    }
}

/// Resolves all but a last component with wildcards: Windows drops a dot at its end, which would widen the pattern.
SystemError Resolve(std::wstring& path) {
    const std::size_t lastStart = path.find_last_of(L"\\/") + 1;  // 0 when there is no separator
    const std::wstring last = path.substr(lastStart);
    if (!HasWildcard(last)) {
        return FullPath(path, path);
    }
    std::wstring folder = lastStart == 0 ? L"." : path.substr(0, lastStart);
    if (const SystemError code = FullPath(folder, folder)) {
        return code;
    }
    if (folder.back() != L'\\') {
        folder += L'\\';
    }
    path = folder + last;
    return error::success;
}

}  // namespace

bool IsDeviceName(std::wstring_view component) {
    std::wstring_view base = component.substr(0, component.find_first_of(L".:"));
    base = base.substr(0, base.find_last_not_of(L' ') + 1);  // "NUL .txt" is the device too
    std::wstring name(base);
    CharUpperBuffW(name.data(), static_cast<DWORD>(name.size()));
    static constexpr std::array<std::wstring_view, 6> plain = {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"};
    if (std::find(plain.begin(), plain.end(), name) != plain.end()) {
        return true;
    }
    static constexpr std::wstring_view digits = L"123456789\u00B9\u00B2\u00B3";
    return name.size() == 4 && (name.starts_with(L"COM") || name.starts_with(L"LPT")) &&
           digits.find(name[3]) != std::wstring_view::npos;
}

SystemError ToWidePath(std::string_view path, std::wstring& wide) {
    if (HoldsZero(path)) {
        return error::invalidName;
    }
    wide = ToWide(path);
    if (IsDevicePath(wide)) {
        return error::success;
    }
    const bool absolute = HasDrive(wide) || IsNetworkPath(wide);
    if (!absolute || !IsPlain(wide, Components(wide))) {
        if (!IsLong(wide)) {
            return error::success;
        }
        if (const SystemError code = Resolve(wide)) {
            return code;
        }
        if (!HasDrive(wide) && !IsNetworkPath(wide)) {
            return error::success;
        }
    }
    if (NeedsLongForm(wide, Components(wide))) {
        wide = WithLongForm(wide);
    }
    return error::success;
}

std::wstring WithoutLongForm(std::wstring_view path) {
    if (path.starts_with(longNetworkForm)) {
        return std::wstring(L"\\\\").append(path.substr(longNetworkForm.size()));
    }
    if (path.starts_with(longForm)) {
        return std::wstring(path.substr(longForm.size()));
    }
    return std::wstring(path);
}

}  // namespace marlok::win32
