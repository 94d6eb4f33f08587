#pragma once

#include "platform/Shell.h"

namespace marlok::win32 {

/// The two ways of writing a shortcut file. Both return 0 or the failing object's code.

/// Through the script host's shell object, as scripts do.
[[nodiscard]] SystemError SaveShortcutByScriptHost(const Shortcut& shortcut);

/// Through the shell's own link object, which every Windows has and which takes any text.
[[nodiscard]] SystemError SaveShortcutByLinkObject(const Shortcut& shortcut);

/// True when `shortcut` holds only characters of the system's code page. The script host's object converts its file
/// name to that code page, so other names fail there or, worse, name another file.
[[nodiscard]] bool FitsCodePage(const Shortcut& shortcut);

}  // namespace marlok::win32
