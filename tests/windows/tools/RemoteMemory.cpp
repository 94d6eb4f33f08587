#include "tests/windows/tools/RemoteMemory.h"

#include <stdexcept>

namespace marlok::test {

namespace {

HANDLE OpenProcessOf(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    HANDLE opened = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, process);
    if (opened == nullptr) {
        throw std::runtime_error("cannot reach the window's process");
    }
    return opened;
}

}  // namespace

RemoteMemory::RemoteMemory(HWND window, std::size_t size)
    : process_(OpenProcessOf(window)),
      memory_(
          static_cast<std::byte*>(VirtualAllocEx(process_, nullptr, size, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE))) {
    if (memory_ == nullptr) {
        CloseHandle(process_);
        throw std::runtime_error("no memory in the window's process");
    }
}

RemoteMemory::~RemoteMemory() {
    VirtualFreeEx(process_, memory_, 0, MEM_RELEASE);
    CloseHandle(process_);
}

void RemoteMemory::Write(std::size_t offset, const void* data, std::size_t size) const {
    SIZE_T done = 0;
    if (WriteProcessMemory(process_, memory_ + offset, data, size, &done) == FALSE || done != size) {
        throw std::runtime_error("cannot write into the window's process");
    }
}

void RemoteMemory::Read(std::size_t offset, void* data, std::size_t size) const {
    SIZE_T done = 0;
    if (ReadProcessMemory(process_, memory_ + offset, data, size, &done) == FALSE || done != size) {
        throw std::runtime_error("cannot read from the window's process");
    }
}

}  // namespace marlok::test
