#pragma once

#include <cstddef>
#include <string_view>

namespace marlok {

/// What a path begins with.
struct PathRoot {
    enum class Kind {
        none,     ///< relative, or relative to a drive ("C:x"), or nothing that is a path
        drive,    ///< "C:\"
        network,  ///< "\\server\share\"
        device,   ///< "\\?\" or "\\.\": taken literally by the system
    };
    Kind kind = Kind::none;

    /// Bytes that the root takes, with the "\" behind it where the path has one. A network path that ends before its
    /// share is all root.
    std::size_t length = 0;
};

/// The root of a path. "/" does not separate.
[[nodiscard]] PathRoot RootOf(std::string_view path);

/// True for a path that begins with a drive root such as "C:\".
[[nodiscard]] bool HasDriveRoot(std::string_view path);

/// True for a path that begins with a server ("\\server").
[[nodiscard]] bool IsNetworkPath(std::string_view path);

/// True for a root and nothing else: "C:\", "\\server\share", "\\server\share\".
[[nodiscard]] bool IsRoot(std::string_view path);

}  // namespace marlok
