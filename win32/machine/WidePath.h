#pragma once

#include <string>
#include <string_view>

#include "platform/SystemError.h"

namespace marlok::win32 {

/// The path as the wide file functions take it. Paths that Windows would cut, alter or refuse in their usual form get
/// the "\\?\" form: long ones, and those with a component that ends in a dot or a blank or is a device name. A wildcard
/// in the last component stays what it is.
/// `error::invalidName` for a path that holds a zero character; else the error of making a relative path full.
[[nodiscard]] SystemError ToWidePath(std::string_view path, std::wstring& wide);

/// `path` without the "\\?\" or "\\?\UNC\" form ("\\?\UNC\server\share" -> "\\server\share").
[[nodiscard]] std::wstring WithoutLongForm(std::wstring_view path);

}  // namespace marlok::win32
