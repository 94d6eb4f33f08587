#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace marlok {

/// What FirstOccurrences gives for a text that does not occur.
inline constexpr std::size_t notFound = std::string_view::npos;

/// Where each of `items` first occurs in `text` (bytes from its start; letter case matters; an occurrence inside a
/// longer line counts), `notFound` where it does not; the empty item occurs at 0. Many items are sought at once: it
/// takes time proportional to `text` for each different first component ("Data" of "Data\a.doc"; a drive root counts as
/// one), and to `items`, not to `text` times `items`.
[[nodiscard]] std::vector<std::size_t> FirstOccurrences(std::string_view text, const std::vector<std::string>& items);

/// The lines of `text` that contain each of `items`, as numbers of lines from 0 in ascending order. Lines end in a
/// carriage return and a line feed; no item holds either. Time as above, and in proportion to what is found.
[[nodiscard]] std::vector<std::vector<std::size_t>> LinesContaining(std::string_view text,
                                                                    const std::vector<std::string>& items);

}  // namespace marlok
