#pragma once

#include <windows.h>
// The order matters: these need the types above.
#include <objbase.h>
#include <oleauto.h>

#include <string_view>
#include <utility>

#include "platform/SystemError.h"

/// Owners for automation: an interface pointer, a string, a variant, and the thread's apartment.
namespace marlok::win32 {

/// Holds one reference to an interface.
template <class T>
class ComPtr {
 public:
    ComPtr() = default;
    ComPtr(const ComPtr&) = delete;
    ComPtr& operator=(const ComPtr&) = delete;
    ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
    ComPtr& operator=(ComPtr&& other) noexcept {
        std::swap(pointer_, other.pointer_);
        return *this;
    }
    ~ComPtr() { Reset(); }

    [[nodiscard]] T* Get() const { return pointer_; }
    T* operator->() const { return pointer_; }
    explicit operator bool() const { return pointer_ != nullptr; }

    void Reset() {
        if (T* old = std::exchange(pointer_, nullptr)) {
            old->Release();
        }
    }

    /// Where a call puts the reference it hands out; what was held is released first.
    [[nodiscard]] T** Receive() {
        Reset();
        return &pointer_;
    }

    /// The same for calls that take an untyped pointer.
    [[nodiscard]] void** ReceiveVoid() { return reinterpret_cast<void**>(Receive()); }

 private:
    T* pointer_ = nullptr;
};

/// An automation string.
class Bstr {
 public:
    explicit Bstr(std::wstring_view text) : value_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {}
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    ~Bstr() { SysFreeString(value_); }

    [[nodiscard]] BSTR Get() const { return value_; }

 private:
    BSTR value_;
};

/// An automation value; cleared by its destructor.
class Variant {
 public:
    Variant() { VariantInit(&value_); }
    explicit Variant(std::wstring_view text) : Variant() {
        value_.vt = VT_BSTR;
        value_.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    }
    explicit Variant(int number) : Variant() {
        value_.vt = VT_I4;
        value_.lVal = number;
    }
    explicit Variant(bool flag) : Variant() {
        value_.vt = VT_BOOL;
        value_.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
    }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    Variant(Variant&& other) noexcept : Variant() { std::swap(value_, other.value_); }
    Variant& operator=(Variant&& other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }
    ~Variant() { VariantClear(&value_); }

    [[nodiscard]] VARIANT& Get() { return value_; }
    [[nodiscard]] const VARIANT& Get() const { return value_; }

 private:
    VARIANT value_{};
};

/// Puts the calling thread into a single-threaded apartment for as long as it lives.
class Apartment {
 public:
    Apartment() : result_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE)) {}
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment() {
        if (SUCCEEDED(result_)) {
            CoUninitialize();
        }
    }

 private:
    HRESULT result_;
};

/// The system code inside a COM result where it carries one, else the result itself; 0 for success.
[[nodiscard]] inline SystemError ToSystemError(HRESULT result) {
    if (SUCCEEDED(result)) {
        return error::success;
    }
    const auto code = static_cast<SystemError>(result);
    return HRESULT_FACILITY(code) == FACILITY_WIN32 ? code & 0xFFFFU : code;
}

}  // namespace marlok::win32
