#pragma once

#include "platform/Browser.h"
#include "win32/machine/Automation.h"

namespace marlok::win32 {

/// The browser that Windows lets programs drive as an automation object. Newer systems may not have it.
class Win32Browser : public Browser {
 public:
    bool Start() override;
    bool Navigate(const std::string& address) override;
    bool ReadyState(int& state) override;
    bool Show() override;
    void Release() override { browser_ = {}; }

 private:
    Automation browser_;
};

}  // namespace marlok::win32
