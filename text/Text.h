#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Text is UTF-8 in `std::string` everywhere. File names may hold unpaired UTF-16 surrogates; they are
/// carried as the three bytes a surrogate would have in UTF-8, so that a name survives the way from the file
/// system through a list and a text file back to the file system unchanged.
///
/// Counts and positions are characters (code points), never bytes.
namespace marlok::text {

/// Number of characters. A byte that belongs to no well-formed sequence counts as one character.
[[nodiscard]] std::size_t CharacterCount(std::string_view text);

/// The first `count` characters; the whole text when it is shorter.
[[nodiscard]] std::string_view Left(std::string_view text, std::size_t count);

/// Everything after the first `count` characters; "" when there is nothing left.
[[nodiscard]] std::string_view AfterFirst(std::string_view text, std::size_t count);

/// The last `count` characters; the whole text when it is shorter.
[[nodiscard]] std::string_view Right(std::string_view text, std::size_t count);

/// True when `text` is well-formed UTF-8. Encoded surrogates are accepted (see above).
[[nodiscard]] bool IsUtf8(std::string_view text);

/// UTF-8 to UTF-16 and back, lossless for every UTF-16 text. Malformed bytes become U+FFFD.
[[nodiscard]] std::u16string ToUtf16(std::string_view text);
[[nodiscard]] std::string FromUtf16(std::u16string_view text);

/// Letter-case folding of one UTF-16 unit the way file systems fold names: simple, one unit to one unit. Covers
/// the bicameral scripts of the basic plane; other units come back unchanged.
[[nodiscard]] char16_t FoldUnit(char16_t unit);

/// `text` folded for comparison without regard to letter case.
[[nodiscard]] std::string Fold(std::string_view text);

/// True when both texts are equal without regard to letter case.
[[nodiscard]] bool EqualIgnoringCase(std::string_view a, std::string_view b);

/// True when `part` occurs in `whole` without regard to letter case. The empty text occurs everywhere.
[[nodiscard]] bool ContainsIgnoringCase(std::string_view whole, std::string_view part);

/// The pieces of `text` between separators, empty ones included; always at least one piece.
[[nodiscard]] std::vector<std::string_view> Split(std::string_view text, std::string_view separator);

/// `text` without the given characters at its two ends.
[[nodiscard]] std::string_view Trim(std::string_view text, std::string_view characters);

}  // namespace marlok::text
