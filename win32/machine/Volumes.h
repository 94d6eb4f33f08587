#pragma once

#include <string>

#include "platform/FileSystem.h"

namespace marlok::win32 {

/// FileSystem::GetVolume for a path as ToWidePath gives it.
[[nodiscard]] SystemError FindVolume(const std::wstring& path, Volume& volume);

}  // namespace marlok::win32
