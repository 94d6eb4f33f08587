#pragma once

#include <string>

/// What the tests have to know of Wine, where Windows itself is not at hand. The program knows nothing of it.
namespace marlok::test {

/// True when this Windows is Wine.
[[nodiscard]] bool IsWine();

/// The name that Wine's host has for an existing or new file; "" on Windows itself.
[[nodiscard]] std::string HostPath(const std::wstring& path);

/// Starts a program of Wine's host: "ln", R"(-s "a" "b")". It runs by itself; wait for what it does.
[[nodiscard]] bool StartOnHost(const std::wstring& program, const std::wstring& arguments);

}  // namespace marlok::test
