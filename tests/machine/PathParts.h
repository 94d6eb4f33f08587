#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/SystemError.h"
#include "tests/machine/Upcase.h"

namespace marlok::test {

/// A path taken apart the way Windows does it before it looks at the disk.
struct PathParts {
    SystemError error = error::success;  ///< why the path cannot name anything; the rest is empty then
    std::string root;                    ///< "C:" or "\\server\share"
    std::vector<std::string> names;      ///< the components below the root; "." and ".." are resolved
    bool trailingSeparator = false;

    /// The path put together again: "C:\Data\a.doc", "C:\" for a bare root.
    [[nodiscard]] std::string Text() const;
};

struct PathRules {
    bool wildcards = false;  ///< the last component may hold "*" and "?"
    bool trimNames = true;   ///< trailing dots and blanks of components are dropped, as in any ordinary Windows path
};

/// Takes `path` apart. Relative and drive-relative paths start at `currentFolder`. A path that begins with "\\?\" is
/// taken as it stands.
[[nodiscard]] PathParts ParsePath(const std::string& path, const std::string& currentFolder, PathRules rules);

/// True for a full drive or network path that leaves nothing to resolve: no "/", no "." or "..", single separators.
[[nodiscard]] bool IsPlainPath(std::string_view path);

/// The key under which a folder keeps a name: equal for names that differ in letter case alone, in the order in
/// which the file system lists them.
[[nodiscard]] std::u16string NameKey(std::string_view name, UpcaseTable upcase = &Upcase);

}  // namespace marlok::test
