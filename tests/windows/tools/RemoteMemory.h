#pragma once

#include <windows.h>

#include <cstddef>

namespace marlok::test {

/// Memory in the process of a window, for messages that carry a pointer and are not translated between processes: those
/// of the common controls.
class RemoteMemory {
 public:
    /// @throws std::runtime_error when the process cannot be reached.
    RemoteMemory(HWND window, std::size_t size);
    RemoteMemory(const RemoteMemory&) = delete;
    RemoteMemory& operator=(const RemoteMemory&) = delete;
    ~RemoteMemory();

    /// The address over there, `offset` bytes from the start.
    [[nodiscard]] LPARAM At(std::size_t offset) const { return reinterpret_cast<LPARAM>(memory_ + offset); }

    /// Copies there and back, `offset` bytes from the start.
    /// @throws std::runtime_error when it fails.
    void Write(std::size_t offset, const void* data, std::size_t size) const;
    void Read(std::size_t offset, void* data, std::size_t size) const;

 private:
    HANDLE process_;
    std::byte* memory_;
};

}  // namespace marlok::test
