#pragma once

#include <string_view>

#include "tests/machine/Upcase.h"

namespace marlok::test {

/// True when `name` matches `pattern` the way listings match, wildcards "*" and "?" with their meanings from the days
/// of 8.3 names: "*." stands for names without extension, "?" before a dot or at the end for no character as well.
[[nodiscard]] bool MatchesPattern(std::string_view name, std::string_view pattern, UpcaseTable upcase = &Upcase);

}  // namespace marlok::test
