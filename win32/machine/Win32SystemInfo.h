#pragma once

#include "platform/SystemInfo.h"
#include "win32/machine/Handles.h"

namespace marlok::win32 {

class Win32SystemInfo : public SystemInfo {
 public:
    bool GetVersion(VersionRecord& version) override;
    bool GetConnection(std::uint32_t& flags) override;
    std::string ProductName() override;
    std::string WindowsFolder() override;
    std::string ComputerName() override;
    std::string UserName() override;
    std::string ProfileFolder() override;
    std::string FromCodePage(std::string_view bytes) override;
    std::string ErrorText(std::uint32_t code) override;
    void KeepAwake(bool on) override;

 private:
    KernelHandle stayAwake_;  ///< the request that is in force; invalid while there is none
};

}  // namespace marlok::win32
