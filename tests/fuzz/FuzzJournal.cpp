// Any bytes may stand in a journal; what is read from it comes back the same when it is written and read again.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "engine/RunJournal.h"

namespace {

bool Same(const marlok::JournalEntry& a, const marlok::JournalEntry& b) {
    return a.size == b.size && a.time == b.time && a.replaces == b.replaces && a.target == b.target &&
           a.source == b.source;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(data, data + size);
    for (const auto& group : marlok::ParseJournal(text).groups) {
        const auto again = marlok::ParseJournal(marlok::FormatJournalGroup(group.entries, group.unsettled));
        if (again.damaged || again.groups.size() != 1 || again.groups.front().unsettled != group.unsettled ||
            again.groups.front().entries.size() != group.entries.size()) {
            std::abort();
        }
        for (std::size_t i = 0; i < group.entries.size(); ++i) {
            if (!Same(group.entries[i], again.groups.front().entries[i])) {
                std::abort();
            }
        }
    }
    return 0;
}
