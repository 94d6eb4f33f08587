#pragma once

#include <string>

#include "platform/FileSystem.h"

/// What gives files other names. Paths are as ToWidePath gives them.
namespace marlok::win32 {

/// FileSystem::Move.
[[nodiscard]] SystemError MoveOne(const std::wstring& from, const std::wstring& to, std::uint32_t flags);

/// The three files of FileSystem::Replace.
struct Replacement {
    std::wstring replaced;
    std::wstring replacement;
    std::wstring backup;
};

/// FileSystem::Replace.
[[nodiscard]] SystemError ReplaceOne(const Replacement& files);

}  // namespace marlok::win32
