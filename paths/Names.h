#pragma once

#include <string_view>

/// Names of files and folders, as Windows takes them.
namespace marlok {

/// True for a name that older systems take for a device, in every folder and with any extension ("nul", "COM1.txt",
/// "PRN .x"): CON, PRN, AUX, NUL, CONIN$, CONOUT$, and COM and LPT with a digit or a superscript 1, 2 or 3.
[[nodiscard]] bool IsDeviceName(std::string_view name);

/// True for a name that Windows, given it in a usual path, takes for something else: empty, ".", "..", with a dot or a
/// blank at its end, or a device.
[[nodiscard]] bool IsAlteredName(std::string_view name);

/// `name` as Windows takes it in a usual path: without the dots and blanks at its end.
[[nodiscard]] std::string_view WithoutTrailingDots(std::string_view name);

/// True when some file can be called so: no separator, wildcard, control character or other forbidden one, and not dots
/// and blanks alone.
[[nodiscard]] bool IsPlainName(std::string_view name);

/// True when `path` has only plain components. Empty components are passed over.
[[nodiscard]] bool IsPlainRelativePath(std::string_view path);

/// True for what looks like the 8.3 alias of a longer name ("DELETE~1").
[[nodiscard]] bool LooksLikeAlias(std::string_view name);

/// True when the last component of `path` holds "*" or "?".
[[nodiscard]] bool HasWildcard(std::string_view path);

}  // namespace marlok
