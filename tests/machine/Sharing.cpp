#include "tests/machine/Sharing.h"

#include <algorithm>

namespace marlok::test {
namespace {

bool Collide(const Use& there, const Use& wanted) {
    if (wanted.access == access::none || there.access == access::none) {
        return false;
    }
    return (wanted.access & ~there.share) != 0 || (there.access & ~wanted.share) != 0;
}

}  // namespace

void Users::DropEnded(std::uint64_t now) {
    holds_.remove_if([now](const Hold& hold) { return hold.untilTick <= now || hold.calls == 0; });
}

template <class Stops>
bool Users::AnyHold(Stops stops) {
    const auto found = std::find_if(holds_.begin(), holds_.end(), stops);
    if (found == holds_.end()) {
        return false;
    }
    found->calls -= found->calls > 0 ? 1 : 0;
    return true;
}

SystemError Users::Check(Use wanted, std::uint64_t now) {
    DropEnded(now);
    const auto collides = [&wanted](const Use& there) { return Collide(there, wanted); };
    if (std::any_of(uses_.begin(), uses_.end(), collides)) {
        return error::sharingViolation;
    }
    const auto stops = [&](const Hold& hold) {
        switch (hold.kind) {
            case Hold::Kind::handle:
                return Collide(hold.use, wanted);
            case Hold::Kind::image:
                return (wanted.access & access::write) != 0;
            case Hold::Kind::mapping:
                break;  // keeps the content from being cut, not the file from being opened
        }
        return false;
    };
    return AnyHold(stops) ? error::sharingViolation : error::success;
}

bool Users::Any(std::uint64_t now) {
    DropEnded(now);
    const auto isHandle = [](const Hold& hold) { return hold.kind == Hold::Kind::handle; };
    return !uses_.empty() || std::any_of(holds_.begin(), holds_.end(), isHandle);
}

bool Users::AnyRefuses(std::uint64_t now) {
    DropEnded(now);
    return !uses_.empty() || AnyHold([](const Hold& hold) { return hold.kind == Hold::Kind::handle; });
}

bool Users::AnyKeepsName(std::uint64_t now) {
    DropEnded(now);
    const auto keeps = [](const Use& use) { return (use.share & access::remove) == 0; };
    return std::any_of(uses_.begin(), uses_.end(), keeps) ||
           AnyHold([&keeps](const Hold& hold) { return hold.kind == Hold::Kind::handle && keeps(hold.use); });
}

bool Users::Has(Hold::Kind kind, std::uint64_t now) {
    DropEnded(now);
    return AnyHold([kind](const Hold& hold) { return hold.kind == kind; });
}

bool Users::AnyUse(std::uint32_t wanted) const {
    return std::any_of(uses_.begin(), uses_.end(), [wanted](const Use& use) { return (use.access & wanted) != 0; });
}

}  // namespace marlok::test
