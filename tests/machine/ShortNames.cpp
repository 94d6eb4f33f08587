#include "tests/machine/ShortNames.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

#include "tests/machine/Upcase.h"
#include "text/Text.h"

namespace marlok::test {
namespace {

constexpr std::size_t longestBase = 8;
constexpr std::size_t longestExtension = 3;

bool IsReplaced(char16_t unit) {
    constexpr std::u16string_view replaced = u"+,;=[]";
    return unit >= 0x80 || replaced.find(unit) != std::u16string_view::npos;
}

struct Parts {
    std::u16string base;
    std::u16string extension;
};

/// What stands before and behind the last dot, in capitals, without blanks and other dots.
Parts Taken(std::u16string_view name) {
    const std::size_t first = std::min(name.find_first_not_of(u'.'), name.size());
    const std::size_t dot = name.rfind(u'.');
    const bool extended = dot != std::u16string_view::npos && dot > first;
    const auto cleaned = [](std::u16string_view part) {
        std::u16string kept;
        for (const char16_t unit : part) {
            if (unit != u' ' && unit != u'.') {
                kept += IsReplaced(unit) ? u'_' : UpcaseAscii(unit);
            }
        }
        return kept;
    };
    return {cleaned(extended ? name.substr(0, dot) : name),
            cleaned(extended ? name.substr(dot + 1) : std::u16string_view())};
}

/// True for names that MS-DOS could have written, letter case aside.
bool IsShort(std::u16string_view name) {
    const std::size_t dot = name.find(u'.');
    const std::u16string_view base = name.substr(0, dot);
    const std::u16string_view extension = dot == std::u16string_view::npos ? u"" : name.substr(dot + 1);
    const auto odd = [](char16_t unit) { return unit == u' ' || unit == u'.' || IsReplaced(unit); };
    return !base.empty() && base.size() <= longestBase && extension.size() <= longestExtension &&
           dot != name.size() - 1 && std::none_of(base.begin(), base.end(), odd) &&
           std::none_of(extension.begin(), extension.end(), odd);
}

std::u16string Hash(std::u16string_view name) {
    std::uint32_t sum = 0;
    for (const char16_t unit : name) {
        sum = (sum * 37 + unit) & 0xFFFF;
    }
    std::array<char, 8> digits{};
    static_cast<void>(std::snprintf(digits.data(), digits.size(), "%04X", sum));  // always four
    return text::ToUtf16(digits.data());
}

std::string Candidate(const Parts& parts, std::u16string_view base, int number) {
    const std::u16string tail = u"~" + text::ToUtf16(std::to_string(number));
    std::u16string name = std::u16string(base.substr(0, longestBase - tail.size())) + tail;
    if (!parts.extension.empty()) {
        name += u'.' + parts.extension.substr(0, longestExtension);
    }
    return text::FromUtf16(name);
}

}  // namespace

std::string MakeShortName(std::string_view name, const std::function<bool(const std::string&)>& isTaken) {
    constexpr int plainNumbers = 4;    // the fifth name of the same beginning is told apart by a hash
    constexpr std::size_t fewest = 3;  // a beginning of one or two letters says so little that it always is
    const std::u16string units = text::ToUtf16(name);
    if (IsShort(units)) {
        return {};
    }
    const Parts parts = Taken(units);
    for (int number = 1; number <= plainNumbers && parts.base.size() >= fewest; ++number) {
        if (std::string found = Candidate(parts, parts.base, number); !isTaken(found)) {
            return found;
        }
    }
    const std::u16string base = parts.base.substr(0, 2) + Hash(units);
    int number = 1;
    while (isTaken(Candidate(parts, base, number))) {
        ++number;
    }
    return Candidate(parts, base, number);
}

}  // namespace marlok::test
