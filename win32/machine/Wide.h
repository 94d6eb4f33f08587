#pragma once

#include <string>
#include <string_view>

#include "platform/SystemError.h"

/// The seam between the program's text and the wide functions of Windows. No Windows header is needed to include it.
namespace marlok::win32 {

/// UTF-8 to the wide text of Windows and back; lossless for every wide text (see platform/Text.h).
[[nodiscard]] std::wstring ToWide(std::string_view text);
[[nodiscard]] std::string FromWide(std::wstring_view text);

/// True when `text` holds a zero character, where Windows would cut it off.
[[nodiscard]] bool HoldsZero(std::string_view text);

/// The calling thread's last error; `error::ioDevice` when the system has failed without setting one, so that a failure
/// is never taken for success.
[[nodiscard]] SystemError LastError();

}  // namespace marlok::win32
