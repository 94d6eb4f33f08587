#include "win32/machine/WidePath.h"

#include <windows.h>

#include <algorithm>
#include <vector>

#include "paths/Names.h"
#include "paths/Roots.h"
#include "text/Text.h"
#include "win32/machine/Wide.h"

namespace marlok::win32 {

namespace {

/// Windows itself ends at 260 characters with the terminating zero; a folder must leave room for an 8.3 name, and a
/// listing adds "\*".
constexpr std::size_t usualLimit = 240;

constexpr std::wstring_view longForm = L"\\\\?\\";
constexpr std::wstring_view longNetworkForm = L"\\\\?\\UNC\\";

bool IsAbsolute(const PathRoot& root) {
    return root.kind == PathRoot::Kind::drive || root.kind == PathRoot::Kind::network;
}

/// The components behind the drive or the two backslashes, empty ones included. A backslash at the very end adds no
/// component.
std::vector<std::string_view> AllComponents(std::string_view path) {
    path.remove_prefix(HasDriveRoot(path) ? 3 : 2);
    if (path.empty()) {
        return {};
    }
    if (path.back() == '\\') {
        path.remove_suffix(1);
    }
    return text::Split(path, "\\");
}

/// The "\\?\" form is taken literally: it must hold nothing that Windows would have to resolve first.
bool IsPlain(std::string_view path) {
    return path.find('/') == std::string_view::npos && std::ranges::none_of(AllComponents(path), [](auto component) {
               return component.empty() || component == "." || component == "..";
           });
}

bool NeedsLongForm(std::string_view path, std::size_t units) {
    if (units >= usualLimit) {
        return true;
    }
    std::vector<std::string_view> components = AllComponents(path);
    if (!components.empty() && HasWildcard(components.back())) {
        components.pop_back();
    }
    return std::ranges::any_of(components, IsAlteredName);
}

std::wstring WithLongForm(std::wstring_view path, PathRoot::Kind root) {
    if (root == PathRoot::Kind::drive) {
        return std::wstring(longForm).append(path);
    }
    return std::wstring(longNetworkForm).append(path.substr(2));
}

/// A relative path counts with the folder it is relative to.
bool IsLong(const std::wstring& path, bool absolute) {
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
    if (last.find_first_of(L"*?") == std::wstring::npos) {
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

SystemError ToWidePath(std::string_view path, std::wstring& wide) {
    if (HoldsZero(path)) {
        return error::invalidName;
    }
    wide = ToWide(path);
    PathRoot root = RootOf(path);
    if (root.kind == PathRoot::Kind::device) {
        return error::success;
    }
    std::string full(path);
    if (!IsAbsolute(root) || !IsPlain(path)) {
        if (!IsLong(wide, IsAbsolute(root))) {
            return error::success;
        }
        if (const SystemError code = Resolve(wide)) {
            return code;
        }
        full = FromWide(wide);
        root = RootOf(full);
        if (!IsAbsolute(root)) {
            return error::success;
        }
    }
    if (NeedsLongForm(full, wide.size())) {
        wide = WithLongForm(wide, root.kind);
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
