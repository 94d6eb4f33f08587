#pragma once

#include "platform/Drives.h"

namespace marlok::win32 {

/// The drive letters of the machine, as this user's session sees them.
class Win32Drives : public Drives {
 public:
    std::vector<Drive> List() override;
};

}  // namespace marlok::win32
