#pragma once

#include <windows.h>

namespace marlok::win32 {

/// Keeps the system from asking the user for a medium while it lives, whatever the program's own mode is.
class NoSystemBoxes {
 public:
    NoSystemBoxes() : changed_(SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &before_) != 0) {}
    NoSystemBoxes(const NoSystemBoxes&) = delete;
    NoSystemBoxes& operator=(const NoSystemBoxes&) = delete;
    ~NoSystemBoxes() {
        if (changed_) {
            SetThreadErrorMode(before_, nullptr);
        }
    }

 private:
    DWORD before_ = 0;  ///< in front of the flag, whose call fills it
    bool changed_;
};

}  // namespace marlok::win32
