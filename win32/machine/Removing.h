#pragma once

#include <string>

#include "platform/FileSystem.h"

/// What takes files and links away. Paths are as ToWidePath gives them.
namespace marlok::win32 {

/// FileSystem::Delete.
[[nodiscard]] SystemError DeleteOneFile(const std::wstring& path);

/// FileSystem::RemoveLink.
[[nodiscard]] SystemError RemoveOneLink(const std::wstring& path);

}  // namespace marlok::win32
