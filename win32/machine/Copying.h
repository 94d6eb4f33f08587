#pragma once

#include <string>

#include "platform/FileSystem.h"

namespace marlok::win32 {

/// FileSystem::Copy for paths as ToWidePath gives them.
[[nodiscard]] SystemError CopyFileTelling(const std::wstring& from, const std::wstring& to, std::uint32_t flags,
                                          const CopyProgressRoutine& progress);

}  // namespace marlok::win32
