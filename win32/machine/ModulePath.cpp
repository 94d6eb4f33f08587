#include "win32/machine/ModulePath.h"

#include <windows.h>

#include "win32/machine/WidePath.h"

namespace marlok::win32 {

std::wstring ModulePath() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) {
            return {};
        }
        if (length < path.size()) {  // a cut path fills the buffer
            path.resize(length);
            return WithoutLongForm(path);
        }
        path.resize(path.size() * 2);
    }
}

}  // namespace marlok::win32
