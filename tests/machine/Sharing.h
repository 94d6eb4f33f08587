#pragma once

#include <cstdint>
#include <limits>
#include <list>

#include "platform/SystemError.h"

namespace marlok::test {

/// What a handle does with a file, and what its owner lets others do meanwhile.
namespace access {
inline constexpr std::uint32_t none = 0;
inline constexpr std::uint32_t read = 1;
inline constexpr std::uint32_t write = 2;
inline constexpr std::uint32_t remove = 4;  ///< delete or rename
inline constexpr std::uint32_t all = 7;
}  // namespace access

struct Use {
    std::uint32_t access = access::none;
    std::uint32_t share = access::all;
};

/// A handle of another program, that a test puts on a file.
struct Hold {
    enum class Kind {
        handle,
        mapping,  ///< its content is mapped into memory, the handle closed
        image,    ///< it is a program that runs
    };
    Use use = {access::read | access::write, access::none};
    std::uint64_t untilTick = std::numeric_limits<std::uint64_t>::max();  ///< of the machine's clock
    int calls = -1;  ///< it is gone after it has refused so many calls; negative: it stays
    Kind kind = Kind::handle;
};

/// All handles that a file or folder has. Times are ticks of the machine's clock.
class Users {
 public:
    using Id = std::list<Use>::iterator;

    /// Adds a handle of the program's own.
    Id Add(Use use) { return uses_.insert(uses_.end(), use); }
    void Remove(Id id) { uses_.erase(id); }

    void Add(const Hold& hold) { holds_.push_back(hold); }
    void RemoveHolds() { holds_.clear(); }

    /// Success when a new handle of that use can stand beside those there are: each lets the other do what it does.
    /// A handle that does nothing can always. What a hold refuses is counted.
    [[nodiscard]] SystemError Check(Use wanted, std::uint64_t now);

    /// True when anybody but mappings has it open.
    [[nodiscard]] bool Any(std::uint64_t now);

    /// The same, asked by a call that is refused then: that of a hold is counted.
    [[nodiscard]] bool AnyRefuses(std::uint64_t now);

    /// True when a handle forbids others to delete or rename the file. What a hold refuses is counted.
    [[nodiscard]] bool AnyKeepsName(std::uint64_t now);

    [[nodiscard]] bool Has(Hold::Kind kind, std::uint64_t now);

    /// True when a handle of the program's own has this access.
    [[nodiscard]] bool AnyUse(std::uint32_t wanted) const;

 private:
    void DropEnded(std::uint64_t now);

    /// True when a hold that `stops` refuses a call, which is counted.
    template <class Stops>
    bool AnyHold(Stops stops);

    std::list<Use> uses_;
    std::list<Hold> holds_;
};

}  // namespace marlok::test
