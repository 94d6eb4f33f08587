#include "fileops/InternetConnection.h"

namespace marlok {

std::string ConnectionDescription(SystemInfo& system) {
    std::uint32_t flags = 0;
    if (!system.GetConnection(flags)) {
        return "Not Connected";
    }
    if ((flags & (connection::modem | connection::remoteAccess | connection::offline)) != 0) {
        return "";
    }
    std::string text;
    if ((flags & connection::configured) != 0) {
        text += "You have a network connection configured.\r\n";
    }
    if ((flags & connection::lan) != 0) {
        text += "The local system connects to the Internet via a LAN";
    }
    text += (flags & connection::proxy) != 0 ? ", and uses a proxy server. " : ".";
    return text;
}

}  // namespace marlok
