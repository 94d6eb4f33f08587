#pragma once

#include <string>
#include <vector>

namespace marlok::test {

/// Does what the words say, as e2e_tool.cpp describes it; gives back the exit code.
[[nodiscard]] int Run(const std::vector<std::wstring>& words);

}  // namespace marlok::test
