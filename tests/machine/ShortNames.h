#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace marlok::test {

/// The 8.3 alias that the file system makes for a name; "" for a name that is a short one itself. `isTaken` says
/// whether a folder has a name or an alias already.
[[nodiscard]] std::string MakeShortName(std::string_view name, const std::function<bool(const std::string&)>& isTaken);

}  // namespace marlok::test
