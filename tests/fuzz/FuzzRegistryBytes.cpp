// Any type and any bytes may stand in the registry: reading the settings gives some text, never a crash.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "settings/BackupSettings.h"
#include "tests/machine/InMemoryMachine.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    marlok::test::InMemoryMachine machine;
    std::unique_ptr<marlok::RegistryKey> key;
    const std::string path = R"(Software\Marlok Software\Fenwold\Target)";
    const marlok::RegistryValue value{data[0] % 12U, std::string(data + 1, data + size)};
    if (machine.registry.CreateKey(path, key) != marlok::error::success ||
        key->SetValue("TargetPath2", value) != marlok::error::success) {
        std::abort();
    }
    marlok::CRegSettings settings(machine.registry, machine.system);
    marlok::BackupSettings backup(settings);
    for (const marlok::Location& location : backup.Locations()) {
        static_cast<void>(location.WhyRefused());
        static_cast<void>(backup.Sources(location));
    }
    static_cast<void>(settings.GetAllSettings("Target"));
    return 0;
}
