#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "platform/FileSystem.h"
#include "win32/machine/Handles.h"

/// Files, folders and links as they are opened and described. Paths are as ToWidePath gives them.
namespace marlok::win32 {

/// The two halves of a number that the system hands out apart.
[[nodiscard]] std::uint64_t Join(DWORD high, DWORD low);

[[nodiscard]] DirectoryEntry ToEntry(const WIN32_FIND_DATAW& data);

/// Opens the link itself where `path` is one.
[[nodiscard]] FileHandle OpenItself(const std::wstring& path, DWORD access);

/// Opens what `path` leads to, with just enough access to ask for its name and identity.
[[nodiscard]] FileHandle OpenTarget(const std::wstring& path);

/// The entry of `path` itself, names left empty; see FileSystem::GetEntry.
[[nodiscard]] SystemError EntryOf(const std::wstring& path, DirectoryEntry& entry);

/// The last error after a call that failed, success after one that did not.
[[nodiscard]] SystemError ResultOf(BOOL succeeded);

}  // namespace marlok::win32
