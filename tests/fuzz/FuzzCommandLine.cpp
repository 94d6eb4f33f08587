// Any command line splits into arguments without separators, and splits the same way again when they are put together.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "app/CommandLine.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string commandLine(data, data + size);
    const auto arguments = marlok::app::SplitCommandLine(commandLine);
    std::string joined;
    for (const std::string& argument : arguments) {
        if (argument.empty() || argument.find_first_of(" ,/\t\"") != std::string::npos) {
            std::abort();
        }
        joined += argument + " ";
    }
    if (arguments.size() > 100 || marlok::app::SplitCommandLine(joined) != arguments) {
        std::abort();
    }
    return 0;
}
