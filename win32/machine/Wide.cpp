#include "win32/machine/Wide.h"

#include <windows.h>

#include "text/Text.h"

namespace marlok::win32 {

static_assert(sizeof(wchar_t) == sizeof(char16_t), "wide text of Windows is UTF-16");

std::wstring ToWide(std::string_view text) {
    const std::u16string units = text::ToUtf16(text);
    return {units.begin(), units.end()};
}

std::string FromWide(std::wstring_view text) {
    return text::FromUtf16(std::u16string(text.begin(), text.end()));
}

bool HoldsZero(std::string_view text) {
    return text.find('\0') != std::string_view::npos;
}

SystemError LastError() {
    const DWORD code = GetLastError();
    return code == ERROR_SUCCESS ? error::ioDevice : code;
}

}  // namespace marlok::win32
