#pragma once

#include <windows.h>

#include "platform/SystemError.h"

/// Changes made through an open handle, in the newer ways that not every system and not every file system knows.
namespace marlok::win32 {

/// Numbers of the newer ways. This compiler's headers give them to programs alone that need a later Windows than ours.
namespace handleclass {
inline constexpr auto dispositionEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(21);
inline constexpr auto renameEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
}  // namespace handleclass

/// True when this system has the classes above, whatever the file system behind a handle says then. They came together.
[[nodiscard]] bool HasNewHandleClasses();

/// True for the errors by which systems and file systems say that they do not know a class.
[[nodiscard]] bool IsNotThere(SystemError code);

}  // namespace marlok::win32
