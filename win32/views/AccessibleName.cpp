#include "win32/views/AccessibleName.h"

#include "win32/machine/Com.h"
// Behind the types of COM, which it uses.
#include <oleacc.h>

#include "win32/machine/Wide.h"

namespace marlok::win32 {

void NameForScreenReaders(HWND window, const std::string& name) {
    ComPtr<IAccPropServices> service;
    if (FAILED(CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER, IID_IAccPropServices,
                                service.ReceiveVoid()))) {
        return;
    }
    const auto client = static_cast<DWORD>(OBJID_CLIENT);
    // A failure leaves the window's text, which most readers find by themselves.
    if (name.empty()) {
        MSAAPROPID property = PROPID_ACC_NAME;
        static_cast<void>(service->ClearHwndProps(window, client, CHILDID_SELF, &property, 1));
    } else {
        static_cast<void>(service->SetHwndPropStr(window, client, CHILDID_SELF, PROPID_ACC_NAME, ToWide(name).c_str()));
    }
}

}  // namespace marlok::win32
