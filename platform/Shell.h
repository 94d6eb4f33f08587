#pragma once

#include <cstdint>
#include <string>

#include "platform/SystemError.h"

namespace marlok {

/// A file operation handed to the Windows shell, without an owner window.
struct ShellFileOperation {
    enum class Kind : std::uint32_t { copy = 2, remove = 3 };
    Kind kind = Kind::copy;
    std::string from;         ///< one path; the shell's double terminator is added below
    std::string to;           ///< not used by `remove`
    std::uint16_t flags = 0;  ///< the shell's FOF_ bits
};

/// The FOF_ bits that the program uses.
namespace shellflag {
inline constexpr std::uint16_t silent = 0x4;
inline constexpr std::uint16_t noConfirmation = 0x10;
}  // namespace shellflag

/// Everything that is written into a shortcut file.
struct Shortcut {
    std::string path;          ///< full path of the ".lnk" file
    std::string targetPath;    ///< what it opens
    int windowStyle = 1;       ///< 1: normal window
    std::string iconLocation;  ///< icon file, a comma, the icon's index
    std::string description;
    std::string workingDirectory;
};

/// The Windows shell: file operations as the Explorer does them, special folders, shortcuts.
class Shell {
 public:
    virtual ~Shell() = default;

    /// Runs the operation and returns the shell's own result code, 0 for success.
    [[nodiscard]] virtual int Perform(const ShellFileOperation& operation) = 0;

    /// Opens a file with the program that belongs to it.
    struct OpenRequest {
        std::string path;
        std::string parameters;
        std::string folder;  ///< the working folder
        int showMode = 1;    ///< how its window is to appear, as the system numbers it
    };
    [[nodiscard]] virtual SystemError Open(const OpenRequest& request) = 0;

    /// Opens an address ("file:///C:/Help.html#options") with the user's web browser. Opening the file itself would
    /// lose what stands behind the "#". error::fileNotFound where the system does not tell of a browser that can be
    /// started.
    [[nodiscard]] virtual SystemError OpenAddress(const std::string& address) = 0;

    /// The current user's desktop folder without trailing "\"; "" when the system tells none.
    [[nodiscard]] virtual std::string DesktopFolder() = 0;

    /// Writes the shortcut file, replacing an existing one.
    [[nodiscard]] virtual SystemError SaveShortcut(const Shortcut& shortcut) = 0;
};

}  // namespace marlok
