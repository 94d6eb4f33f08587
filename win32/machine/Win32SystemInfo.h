#pragma once

#include "platform/SystemInfo.h"

namespace marlok::win32 {

class Win32SystemInfo : public SystemInfo {
 public:
    bool GetVersion(VersionRecord& version) override;
    bool GetConnection(std::uint32_t& flags) override;
    std::string ProductName() override;
    std::string WindowsFolder() override;
    std::string FromCodePage(std::string_view bytes) override;
    std::string ErrorText(std::uint32_t code) override;
    void KeepAwake(bool on) override;
};

}  // namespace marlok::win32
