#include "tests/machine/InMemoryDrives.h"

#include <string>

namespace marlok::test {

std::vector<Drive> InMemoryDrives::List() {
    std::vector<Drive> drives;
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        const std::string root = std::string(1, letter) + ":";
        const DiskVolume* volume = disk_.FindVolume(root);
        if (volume == nullptr) {
            continue;
        }
        const bool asked = volume->failure == error::success && volume->options.kind != Drive::Kind::network;
        drives.push_back({root + "\\", volume->options.kind, asked ? volume->options.volumeName : ""});
    }
    return drives;
}

}  // namespace marlok::test
