#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "tests/machine/InMemoryClock.h"

namespace marlok::test {

/// One file or folder that a test puts on the disk. A path that ends in "\" is a folder.
struct Seeded {
    std::string path;
    std::string content = {};
    std::optional<FileTime> time = {};  ///< creation and last write; At(9, 0) when a file has none
    std::uint32_t attributes = 0;       ///< besides directory and archive
};

/// What is below a folder: relative path -> content. Every folder is listed, ends in "\" and has the content "".
using Tree = std::map<std::string, std::string>;

}  // namespace marlok::test
