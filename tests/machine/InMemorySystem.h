#pragma once

#include <cstdint>
#include <string>

#include "platform/SystemInfo.h"
#include "tests/machine/FaultPlan.h"

namespace marlok::test {

/// Facts about the in-memory machine, all of them settable. Its code page is Windows-1252.
class InMemorySystem : public SystemInfo {
 public:
    explicit InMemorySystem(FaultPlan& faults) : faults_(faults) {}

    [[nodiscard]] bool GetVersion(VersionRecord& record) override;
    [[nodiscard]] bool GetConnection(std::uint32_t& flags) override;
    [[nodiscard]] std::string ProductName() override { return productName; }
    [[nodiscard]] std::string WindowsFolder() override { return windowsFolder; }
    [[nodiscard]] std::string ComputerName() override { return computerName; }
    [[nodiscard]] std::string UserName() override { return userName; }
    [[nodiscard]] std::string ProfileFolder() override { return profileFolder; }
    [[nodiscard]] std::string FromCodePage(std::string_view bytes) override;
    [[nodiscard]] std::string ErrorText(std::uint32_t code) override;
    void KeepAwake(bool on) override;

    VersionRecord version{10, 0, 19045, 2, ""};
    bool answersVersion = true;
    bool connected = true;
    std::uint32_t connectionFlags = connection::lan | connection::configured;
    std::string productName = "Fenwold";
    std::string computerName = "TESTBENCH";
    std::string userName = "User";
    std::string profileFolder = R"(C:\Users\User)";
    std::string windowsFolder = R"(C:\Windows)";

    /// How often KeepAwake was switched on without having been switched off; 0 when the machine may sleep.
    [[nodiscard]] int AwakeBalance() const { return awakeBalance_; }
    [[nodiscard]] int TimesKeptAwake() const { return timesKeptAwake_; }

    /// The system takes the request back when the process that made it ends.
    void Restart() { awakeBalance_ = 0; }

 private:
    FaultPlan& faults_;
    int awakeBalance_ = 0;
    int timesKeptAwake_ = 0;
};

}  // namespace marlok::test
