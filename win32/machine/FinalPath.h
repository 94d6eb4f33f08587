#pragma once

#include <string>

#include "platform/FileSystem.h"

namespace marlok::win32 {

/// FileSystem::FinalPath for a path as ToWidePath gives it.
[[nodiscard]] SystemError FindFinalPath(const std::wstring& path, std::wstring& finalPath);

/// FileSystem::Identify for a path as ToWidePath gives it.
[[nodiscard]] SystemError FindIdentity(const std::wstring& path, FileIdentity& identity);

}  // namespace marlok::win32
