#pragma once

#include <string>

namespace marlok::win32 {

/// Full path of this program's file, whatever its length; "" when the system does not tell it.
[[nodiscard]] std::wstring ModulePath();

}  // namespace marlok::win32
