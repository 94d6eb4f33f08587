#pragma once

#include <string>
#include <vector>

#include "win32/machine/Com.h"

namespace marlok::win32 {

/// An automation object, used by the names of its methods and properties. Failures come back as the object's result.
class Automation {
 public:
    Automation() = default;

    /// Creates the object registered under `programId`.
    [[nodiscard]] HRESULT Create(const wchar_t* programId);

    [[nodiscard]] HRESULT Get(const wchar_t* property, Variant& value);
    [[nodiscard]] HRESULT Put(const wchar_t* property, Variant value);
    [[nodiscard]] HRESULT Call(const wchar_t* method, std::vector<Variant> arguments, Variant& result);

    /// The same for results that are objects themselves; E_NOINTERFACE when the result is none.
    [[nodiscard]] HRESULT GetObjectProperty(const wchar_t* property, Automation& object);
    [[nodiscard]] HRESULT CallForObject(const wchar_t* method, std::vector<Variant> arguments, Automation& object);

 private:
    [[nodiscard]] HRESULT Invoke(const wchar_t* name, WORD kind, std::vector<Variant>& arguments, Variant& result);

    ComPtr<IDispatch> object_;
};

}  // namespace marlok::win32
