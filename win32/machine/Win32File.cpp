#include "win32/machine/Win32File.h"

#include <algorithm>

#include "win32/machine/Wide.h"

namespace marlok::win32 {

namespace {

/// One call moves at most this much: the kernel counts in 32 bits, and network redirectors refuse more.
constexpr std::size_t largestTransfer = std::size_t{16} << 20;

struct OpenRequest {
    DWORD access;
    DWORD share;
    DWORD disposition;
};

/// `replace` opens what is there and empties it: CREATE_ALWAYS would refuse a hidden file.
OpenRequest RequestFor(OpenMode mode) {
    switch (mode) {
        case OpenMode::createNew:
            return {GENERIC_WRITE, FILE_SHARE_READ, CREATE_NEW};
        case OpenMode::replace:
        case OpenMode::append:
            return {GENERIC_WRITE, FILE_SHARE_READ, OPEN_ALWAYS};
        case OpenMode::read:
            break;
    }
    return {GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING};
}

SystemError PreparePosition(HANDLE handle, OpenMode mode) {
    if (mode == OpenMode::append && SetFilePointerEx(handle, LARGE_INTEGER{}, nullptr, FILE_END) == 0) {
        return LastError();
    }
    if (mode == OpenMode::replace && SetEndOfFile(handle) == 0) {
        return LastError();
    }
    return error::success;
}

}  // namespace

SystemError Win32File::Open(const std::wstring& path, OpenMode mode, std::unique_ptr<File>& file) {
    const OpenRequest request = RequestFor(mode);
    FileHandle handle(CreateFileW(path.c_str(), request.access, request.share, nullptr, request.disposition,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!handle.IsValid()) {
        return LastError();
    }
    if (const SystemError code = PreparePosition(handle.Get(), mode)) {
        return code;
    }
    file = std::make_unique<Win32File>(std::move(handle));
    return error::success;
}

SystemError Win32File::Read(std::string& bytes, std::size_t size) {
    bytes.resize(std::min(size, largestTransfer));
    DWORD count = 0;
    const BOOL done = ReadFile(handle_.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr);
    const SystemError code = done != 0 ? error::success : LastError();
    bytes.resize(code == error::success ? count : 0);
    return code;
}

SystemError Win32File::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        const auto wanted = static_cast<DWORD>(std::min(bytes.size(), largestTransfer));
        DWORD count = 0;
        if (WriteFile(handle_.Get(), bytes.data(), wanted, &count, nullptr) == 0) {
            return LastError();
        }
        if (count < wanted) {
            return error::diskFull;
        }
        bytes.remove_prefix(count);
    }
    return handle_.IsValid() ? error::success : error::invalidHandle;
}

SystemError Win32File::Flush() {
    return FlushFileBuffers(handle_.Get()) != 0 ? error::success : LastError();
}

SystemError Win32File::Close() {
    if (!handle_.IsValid()) {
        return error::invalidHandle;
    }
    return CloseHandle(handle_.Release()) != 0 ? error::success : LastError();
}

}  // namespace marlok::win32
