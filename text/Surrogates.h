#pragma once

#include <string>
#include <string_view>

/// A file name may hold half of a UTF-16 pair alone, which no valid UTF-8 can spell. In files that people and other
/// programs read it is written as its number in angle brackets: "broken <D83D>.txt". Windows allows no such bracket in
/// a name, so every other path is written byte for byte as it is.
namespace marlok::text {

/// `text` as valid UTF-8, if it was valid but for the surrogates. A "<" that would be read as the start of such a
/// number is written as "<003C>".
[[nodiscard]] std::string EscapeSurrogates(std::string_view text);

/// Undoes EscapeSurrogates, exactly.
[[nodiscard]] std::string UnescapeSurrogates(std::string_view text);

}  // namespace marlok::text
