#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace marlok {

/// What the system says of its version.
struct VersionRecord {
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t build = 0;
    std::uint32_t platform = 0;  ///< 1: Windows 95 family, 2: Windows NT family
    std::string servicePack;
};

/// Flags of the Internet connection, as the system numbers them.
namespace connection {
inline constexpr std::uint32_t modem = 0x01;
inline constexpr std::uint32_t lan = 0x02;
inline constexpr std::uint32_t proxy = 0x04;
inline constexpr std::uint32_t remoteAccess = 0x20;
inline constexpr std::uint32_t offline = 0x10;
inline constexpr std::uint32_t configured = 0x40;
}  // namespace connection

/// Facts about the system, and the one state of it that the program asks for.
class SystemInfo {
 public:
    virtual ~SystemInfo() = default;

    /// False when the system does not answer.
    [[nodiscard]] virtual bool GetVersion(VersionRecord& version) = 0;

    /// True when there is a connection; `flags` receives the `connection::` bits either way.
    [[nodiscard]] virtual bool GetConnection(std::uint32_t& flags) = 0;

    /// The product name of the program's version record.
    [[nodiscard]] virtual std::string ProductName() = 0;

    /// The Windows folder without trailing "\".
    [[nodiscard]] virtual std::string WindowsFolder() = 0;

    /// The name of this machine, as its network knows it. "" when the system tells none; so are the next two.
    [[nodiscard]] virtual std::string ComputerName() = 0;

    /// The account that this program runs under, without its domain.
    [[nodiscard]] virtual std::string UserName() = 0;

    /// The folder of that account's own files, without trailing "\".
    [[nodiscard]] virtual std::string ProfileFolder() = 0;

    /// Text in the system's single-byte code page as UTF-8.
    [[nodiscard]] virtual std::string FromCodePage(std::string_view bytes) = 0;

    /// The system's sentence for an error code, without line break; "" when it has none.
    [[nodiscard]] virtual std::string ErrorText(std::uint32_t code) = 0;

    /// While on, the machine does not go to sleep by itself, and the program is not suspended.
    virtual void KeepAwake(bool on) = 0;
};

}  // namespace marlok
