#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Text made of lines that end in a carriage return and a line feed.
namespace marlok::text {

/// The pieces between line ends, empty ones included; what follows the last line end is a piece too.
[[nodiscard]] std::vector<std::string> SplitLines(std::string_view text);

/// The lines one after the other, each with its line end.
[[nodiscard]] std::string JoinLines(const std::vector<std::string>& lines);

}  // namespace marlok::text
