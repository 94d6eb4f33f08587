#include "win32/machine/HandleInfo.h"

#include "win32/machine/Wide.h"

namespace marlok::win32 {

namespace {

bool AskForNewHandleClasses() {
    // No handle is as good as one for this: a class that the system does not have is refused before the handle is.
    DWORD nothing = 0;
    return SetFileInformationByHandle(INVALID_HANDLE_VALUE, handleclass::dispositionEx, &nothing, sizeof nothing) ==
               0 &&
           LastError() == error::invalidHandle;
}

}  // namespace

bool HasNewHandleClasses() {
    static const bool has = AskForNewHandleClasses();
    return has;
}

bool IsNotThere(SystemError code) {
    return code == error::invalidParameter || code == error::notSupported || code == error::invalidFunction;
}

}  // namespace marlok::win32
