#pragma once

#include <string>

#include "platform/SystemError.h"

namespace marlok::win32 {

/// Has an address opened by the program that the user has chosen for addresses of that scheme ("http"): its registered
/// command is started with the address in it. The shell itself takes a "file:" address for the file's path, without
/// the place in the page.
/// error::fileNotFound when none is registered by a command (some programs are not), else the code of a failed start.
[[nodiscard]] SystemError OpenByScheme(const std::wstring& scheme, const std::wstring& address);

/// The command with the address in the place of its "%1", or at its end when it has none.
[[nodiscard]] std::wstring CommandFor(std::wstring command, const std::wstring& address);

}  // namespace marlok::win32
