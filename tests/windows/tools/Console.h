#pragma once

#include <string>

namespace marlok::test {

/// Writes a line to standard output, in UTF-8, at once.
void Say(const std::wstring& line);

/// Writes a line about what went wrong to standard error.
void Complain(const std::string& what);

[[nodiscard]] std::string ToUtf8(const std::wstring& text);
[[nodiscard]] std::wstring ToWide(const std::string& utf8);

/// The text on one line: line breaks, tabs and backslashes as "\r", "\n", "\t" and "\\".
[[nodiscard]] std::wstring OnOneLine(const std::wstring& text);

}  // namespace marlok::test
