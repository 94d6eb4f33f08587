#include "tests/machine/NamePattern.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "text/Text.h"

namespace marlok::test {
namespace {

// The kernel knows five wildcards. The two that programs write become one or another of them, by what stands beside.
constexpr char16_t anyText = u'*';
constexpr char16_t anyOne = u'?';
constexpr char16_t textButLastDot = u'<';  ///< any text that does not hold the name's last dot
constexpr char16_t oneOrEnd = u'>';        ///< one character; nothing before a dot and at the end
constexpr char16_t dotOrEnd = u'"';        ///< a dot; nothing at the end

bool IsWildcard(char16_t unit) {
    return unit == anyText || unit == anyOne;
}

/// The pattern as it is handed to the kernel.
std::u16string Translated(std::u16string pattern) {
    if (pattern == u"*.*") {
        return u"*";
    }
    const bool endsInDot = pattern.size() > 1 && pattern.back() == u'.' && IsWildcard(pattern[pattern.size() - 2]);
    const std::u16string written = pattern;
    for (std::size_t i = 0; i < written.size(); ++i) {
        const char16_t next = i + 1 < written.size() ? written[i + 1] : u'\0';
        if (written[i] == u'?') {
            pattern[i] = oneOrEnd;
        } else if (written[i] == u'.' && IsWildcard(next)) {
            pattern[i] = dotOrEnd;
        } else if (written[i] == u'*' && next == u'.') {
            pattern[i] = textButLastDot;
        }
    }
    if (endsInDot) {
        pattern.pop_back();  // dots at the end of a path are dropped; a star before one still means "no extension"
    }
    return pattern;
}

/// Matches by the set of places in the pattern that have been reached after each character of the name.
class Matcher {
 public:
    Matcher(std::u16string_view name, std::u16string_view pattern)
        : name_(name), pattern_(pattern), lastDot_(name.rfind(u'.')), reached_(pattern.size() + 1) {}

    bool Run() {
        Reach(0, 0);
        for (std::size_t at = 0; at < name_.size(); ++at) {
            const std::vector<bool> before = std::exchange(reached_, std::vector<bool>(pattern_.size() + 1));
            for (std::size_t place = 0; place < pattern_.size(); ++place) {
                if (before[place]) {
                    Take(at, place);
                }
            }
        }
        return reached_[pattern_.size()];
    }

 private:
    /// `at` characters are taken when `place` is reached: passes over what may stand for nothing here.
    void Reach(std::size_t at, std::size_t place) {
        for (; !reached_[place]; ++place) {
            reached_[place] = true;
            if (place == pattern_.size() || !MayBeNothing(at, pattern_[place])) {
                return;
            }
        }
    }

    [[nodiscard]] bool MayBeNothing(std::size_t at, char16_t wildcard) const {
        const bool atEnd = at == name_.size();
        return wildcard == anyText || wildcard == textButLastDot || (wildcard == dotOrEnd && atEnd) ||
               (wildcard == oneOrEnd && (atEnd || name_[at] == u'.'));
    }

    /// Takes the character at `at` by what stands at `place`.
    void Take(std::size_t at, std::size_t place) {
        const char16_t unit = name_[at];
        switch (pattern_[place]) {
            case anyText:
                Reach(at + 1, place);
                break;
            case textButLastDot:
                if (at != lastDot_) {
                    Reach(at + 1, place);
                }
                break;
            case anyOne:
                Reach(at + 1, place + 1);
                break;
            case oneOrEnd:
                if (unit != u'.') {
                    Reach(at + 1, place + 1);
                }
                break;
            case dotOrEnd:
                if (unit == u'.') {
                    Reach(at + 1, place + 1);
                }
                break;
            default:
                if (unit == pattern_[place]) {
                    Reach(at + 1, place + 1);
                }
        }
    }

    std::u16string_view name_;
    std::u16string_view pattern_;
    std::size_t lastDot_;
    std::vector<bool> reached_;
};

std::u16string Folded(std::string_view text, UpcaseTable upcase) {
    std::u16string units = text::ToUtf16(text);
    std::transform(units.begin(), units.end(), units.begin(), upcase);
    return units;
}

}  // namespace

bool MatchesPattern(std::string_view name, std::string_view pattern, UpcaseTable upcase) {
    const std::u16string nameUnits = Folded(name, upcase);
    const std::u16string patternUnits = Translated(Folded(pattern, upcase));
    return Matcher(nameUnits, patternUnits).Run();
}

}  // namespace marlok::test
