#pragma once

namespace marlok::test {

/// How a volume makes two names comparable, unit by unit; formatting writes the table to it.
using UpcaseTable = char16_t (*)(char16_t);

/// The table that Windows writes: one capital for one letter, the same in every country, nothing composed or taken
/// apart.
[[nodiscard]] char16_t Upcase(char16_t unit);

/// A table that knows the letters of English alone.
[[nodiscard]] char16_t UpcaseAscii(char16_t unit);

}  // namespace marlok::test
