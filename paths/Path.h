#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Paths as text. Nothing here touches a disk or fails.
namespace marlok {

/// `path` with a "\" at its end; "" gives "\".
[[nodiscard]] std::string AddBackslash(std::string_view path);

/// `path` without the "\" at its end, if it has any; a drive root keeps its own.
[[nodiscard]] std::string WithoutBackslash(std::string_view path);

/// What lies in `folder` under the name or relative path `name`.
[[nodiscard]] std::string Join(std::string_view folder, std::string_view name);

/// What follows the first component, as the shell function of this name finds it: "D:\Backups\Daily" gives
/// "Backups\Daily", "\\server\share" gives "server\share"; "" when no component follows. "/" does not separate.
[[nodiscard]] std::string_view PathFindNextComponent(std::string_view path);

/// The last component, as the shell function of this name finds it: "C:\A\b.txt" gives "b.txt", "C:\A\" gives "A\".
/// "\", "/" and ":" all separate.
[[nodiscard]] std::string_view PathFindFileName(std::string_view path);

[[nodiscard]] std::string FileNameOf(std::string_view path);

/// Path after its first component ("D:\Backups\Daily" -> "Backups\Daily"). "" for a bare drive root.
[[nodiscard]] std::string PathAfterRoot(std::string_view path);

/// The folder of a file: `path` without its last component and the "\" before it; a drive root keeps its "\". "" when
/// there is no "\".
[[nodiscard]] std::string FolderOf(std::string_view path);

/// The folder above; "" above a drive's root or a network share, and above a "\" at the beginning. Always shorter than
/// `path`.
[[nodiscard]] std::string FolderAbove(std::string_view path);

/// The folders from the root of `path` down to it, `path` included: "C:\A\B" gives "C:\", "C:\A", "C:\A\B".
[[nodiscard]] std::vector<std::string> FoldersOnTheWay(const std::string& path);

/// The components of a relative path, empty ones left out. They point into `path`.
[[nodiscard]] std::vector<std::string_view> Components(std::string_view path);

/// Cuts the first token with its delimiter off `text` and returns it; "" when there is no delimiter, and `text` stays.
[[nodiscard]] std::string NextToken(std::string& text, std::string_view delimiter);

/// True when the fourth character from the end is ".", the mark of a three-letter extension.
[[nodiscard]] bool HasThreeLetterExtension(std::string_view path);

/// True when `path` is `folder` or lies below it; compared as text without regard to letter case.
[[nodiscard]] bool IsAtOrBelow(std::string_view path, std::string_view folder);

}  // namespace marlok
