#pragma once

#include <string>
#include <vector>

namespace marlok {

/// A drive letter that is in use.
struct Drive {
    enum class Kind { unknown, removable, fixed, network, optical, memory };
    std::string root;  ///< "C:\"
    Kind kind = Kind::unknown;
    std::string volumeName;  ///< "" for a volume without a name, and for a drive that is not ready

    friend bool operator==(const Drive&, const Drive&) = default;
};

/// The drives of the machine.
class Drives {
 public:
    virtual ~Drives() = default;

    /// Every drive letter in use now, in alphabetical order. Does not wait for network drives: their volumes are not
    /// asked for a name.
    [[nodiscard]] virtual std::vector<Drive> List() = 0;
};

}  // namespace marlok
