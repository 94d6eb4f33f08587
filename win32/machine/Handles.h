#pragma once

#include <windows.h>

#include <utility>

/// Move-only owners of what Windows hands out. The invalid value is part of the type; nobody else closes a handle.
namespace marlok::win32 {

/// Owns one `Traits::Value`: closed by `Traits::Close` unless it equals `Traits::Invalid()`.
template <class Traits>
class Owner {
 public:
    using Value = typename Traits::Value;

    Owner() = default;
    explicit Owner(Value value) : value_(value) {}
    Owner(const Owner&) = delete;
    Owner& operator=(const Owner&) = delete;
    Owner(Owner&& other) noexcept : value_(other.Release()) {}
    Owner& operator=(Owner&& other) noexcept {
        if (this != &other) {
            Reset(other.Release());
        }
        return *this;
    }
    ~Owner() { Reset(); }

    [[nodiscard]] bool IsValid() const { return value_ != Traits::Invalid(); }
    [[nodiscard]] Value Get() const { return value_; }

    /// Gives the value up without closing it.
    [[nodiscard]] Value Release() { return std::exchange(value_, Traits::Invalid()); }

    /// Closes what is held and takes `value` over.
    void Reset(Value value = Traits::Invalid()) {
        const Value old = std::exchange(value_, value);
        if (old != Traits::Invalid()) {
            Traits::Close(old);
        }
    }

    /// Where a call puts the value it creates; what was held is closed first.
    [[nodiscard]] Value* Receive() {
        Reset();
        return &value_;
    }

 private:
    Value value_ = Traits::Invalid();
};

/// Kernel handles that a failed call returns as INVALID_HANDLE_VALUE (files).
struct FileHandleTraits {
    using Value = HANDLE;
    static Value Invalid() { return INVALID_HANDLE_VALUE; }
    static void Close(Value value) { CloseHandle(value); }
};
using FileHandle = Owner<FileHandleTraits>;

/// Kernel handles that a failed call returns as null (processes, mutexes, events).
struct KernelHandleTraits {
    using Value = HANDLE;
    static Value Invalid() { return nullptr; }
    static void Close(Value value) { CloseHandle(value); }
};
using KernelHandle = Owner<KernelHandleTraits>;

struct FindHandleTraits {
    using Value = HANDLE;
    static Value Invalid() { return INVALID_HANDLE_VALUE; }
    static void Close(Value value) { FindClose(value); }
};
using FindHandle = Owner<FindHandleTraits>;

struct RegKeyTraits {
    using Value = HKEY;
    static Value Invalid() { return nullptr; }
    static void Close(Value value) { RegCloseKey(value); }
};
using RegKey = Owner<RegKeyTraits>;

struct FontTraits {
    using Value = HFONT;
    static Value Invalid() { return nullptr; }
    static void Close(Value value) { DeleteObject(value); }
};
using FontHandle = Owner<FontTraits>;

struct BrushTraits {
    using Value = HBRUSH;
    static Value Invalid() { return nullptr; }
    static void Close(Value value) { DeleteObject(value); }
};
using BrushHandle = Owner<BrushTraits>;

struct IconTraits {
    using Value = HICON;
    static Value Invalid() { return nullptr; }
    static void Close(Value value) { DestroyIcon(value); }
};
using IconHandle = Owner<IconTraits>;

struct BitmapTraits {
    using Value = HBITMAP;
    static Value Invalid() { return nullptr; }
    static void Close(Value value) { DeleteObject(value); }
};
using BitmapHandle = Owner<BitmapTraits>;

/// A drawing surface in memory.
struct MemorySurfaceTraits {
    using Value = HDC;
    static Value Invalid() { return nullptr; }
    static void Close(Value value) { DeleteDC(value); }
};
using MemorySurface = Owner<MemorySurfaceTraits>;

struct WindowTraits {
    using Value = HWND;
    static Value Invalid() { return nullptr; }
    static void Close(Value value) { DestroyWindow(value); }
};
using WindowHandle = Owner<WindowTraits>;

/// Memory that a call says is to be freed with LocalFree.
struct LocalTextTraits {
    using Value = wchar_t*;
    static Value Invalid() { return nullptr; }
    static void Close(Value value) { LocalFree(value); }
};
using LocalText = Owner<LocalTextTraits>;

}  // namespace marlok::win32
