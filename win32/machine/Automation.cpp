#include "win32/machine/Automation.h"

#include <algorithm>

namespace marlok::win32 {

namespace {

HRESULT ToObject(Variant& value, ComPtr<IDispatch>& object) {
    if (value.Get().vt != VT_DISPATCH || value.Get().pdispVal == nullptr) {
        return E_NOINTERFACE;
    }
    return value.Get().pdispVal->QueryInterface(IID_IDispatch, object.ReceiveVoid());
}

}  // namespace

HRESULT Automation::Create(const wchar_t* programId) {
    CLSID id{};
    const HRESULT found = CLSIDFromProgID(programId, &id);
    if (FAILED(found)) {
        return found;
    }
    return CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                            object_.ReceiveVoid());
}

HRESULT Automation::Get(const wchar_t* property, Variant& value) {
    std::vector<Variant> none;
    return Invoke(property, DISPATCH_PROPERTYGET, none, value);
}

HRESULT Automation::Put(const wchar_t* property, Variant value) {
    std::vector<Variant> arguments;
    arguments.push_back(std::move(value));
    Variant none;
    return Invoke(property, DISPATCH_PROPERTYPUT, arguments, none);
}

HRESULT Automation::Call(const wchar_t* method, std::vector<Variant> arguments, Variant& result) {
    return Invoke(method, DISPATCH_METHOD, arguments, result);
}

HRESULT Automation::GetObjectProperty(const wchar_t* property, Automation& object) {
    Variant value;
    const HRESULT result = Get(property, value);
    return FAILED(result) ? result : ToObject(value, object.object_);
}

HRESULT Automation::CallForObject(const wchar_t* method, std::vector<Variant> arguments, Automation& object) {
    Variant value;
    const HRESULT result = Call(method, std::move(arguments), value);
    return FAILED(result) ? result : ToObject(value, object.object_);
}

HRESULT Automation::Invoke(const wchar_t* name, WORD kind, std::vector<Variant>& arguments, Variant& result) {
    if (!object_) {
        return E_POINTER;
    }
    std::wstring nameCopy = name;  // the interface asks for a pointer to non-constant text
    wchar_t* names = nameCopy.data();
    DISPID id = DISPID_UNKNOWN;
    const HRESULT known = object_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(known)) {
        return known;
    }
    std::vector<VARIANT> plain;  // borrowed from `arguments`, which clear them; the last one comes first
    std::transform(arguments.rbegin(), arguments.rend(), std::back_inserter(plain),
                   [](Variant& argument) { return argument.Get(); });
    DISPID putId = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{};
    parameters.rgvarg = plain.data();
    parameters.cArgs = static_cast<UINT>(plain.size());
    const bool put = kind == DISPATCH_PROPERTYPUT;
    parameters.rgdispidNamedArgs = put ? &putId : nullptr;
    parameters.cNamedArgs = put ? 1 : 0;
    return object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters, put ? nullptr : &result.Get(), nullptr,
                           nullptr);
}

}  // namespace marlok::win32
