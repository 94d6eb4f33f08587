#include "text/Text.h"

#include <algorithm>
#include <array>

namespace marlok::text {

namespace {

constexpr char32_t replacement = 0xFFFD;

struct Decoded {
    char32_t character = replacement;
    std::size_t length = 1;  ///< bytes taken
    bool wellFormed = false;
};

bool IsContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

struct LeadByte {
    std::size_t length;
    char32_t bits;
    char32_t smallest;  ///< a smaller character in that many bytes is overlong
};

LeadByte ReadLead(unsigned char lead) {
    if (lead >= 0xC2 && lead <= 0xDF) {
        return {2, lead & 0x1FU, 0x80};
    }
    if (lead >= 0xE0 && lead <= 0xEF) {
        return {3, lead & 0x0FU, 0x800};
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        return {4, lead & 0x07U, 0x10000};
    }
    return {0, 0, 0};
}

/// The character that starts at `position`. Encoded surrogates are well-formed here: names may hold them.
Decoded DecodeAt(std::string_view text, std::size_t position) {
    const auto lead = static_cast<unsigned char>(text[position]);
    if (lead < 0x80) {
        return {lead, 1, true};
    }
    const LeadByte first = ReadLead(lead);
    if (first.length == 0 || text.size() - position < first.length) {
        return {};
    }
    char32_t character = first.bits;
    for (std::size_t i = 1; i < first.length; ++i) {
        if (!IsContinuation(text[position + i])) {
            return {};
        }
        character = (character << 6U) | (static_cast<unsigned char>(text[position + i]) & 0x3FU);
    }
    if (character < first.smallest || character > 0x10FFFF) {
        return {};
    }
    return {character, first.length, true};
}

/// Length in bytes of the character that ends before `end`.
std::size_t LengthBefore(std::string_view text, std::size_t end) {
    const std::size_t most = std::min<std::size_t>(4, end);
    for (std::size_t length = 1; length <= most; ++length) {
        const std::size_t start = end - length;
        if (!IsContinuation(text[start])) {
            const Decoded decoded = DecodeAt(text.substr(0, end), start);
            return decoded.length == length ? length : 1;
        }
    }
    return 1;
}

void Append(std::string& out, char32_t character) {
    const auto byte = [&out](char32_t value) { out.push_back(static_cast<char>(static_cast<unsigned char>(value))); };
    if (character < 0x80) {
        byte(character);
    } else if (character < 0x800) {
        byte(0xC0U | (character >> 6U));
        byte(0x80U | (character & 0x3FU));
    } else if (character < 0x10000) {
        byte(0xE0U | (character >> 12U));
        byte(0x80U | ((character >> 6U) & 0x3FU));
        byte(0x80U | (character & 0x3FU));
    } else {
        byte(0xF0U | (character >> 18U));
        byte(0x80U | ((character >> 12U) & 0x3FU));
        byte(0x80U | ((character >> 6U) & 0x3FU));
        byte(0x80U | (character & 0x3FU));
    }
}

/// A run of small letters. Step 1: every unit of the run; step 2: every other one, from the first on.
struct CaseRun {
    char16_t first;
    char16_t last;
    int distance;  ///< to the capital letter
    int step;
};

// Only letters whose capital has no second small form, so that two names are never taken for one that a file system
// tells apart.
constexpr std::array caseRuns{
    CaseRun{u'a', u'z', -32, 1},     CaseRun{0x00E0, 0x00F6, -32, 1}, CaseRun{0x00F8, 0x00FE, -32, 1},
    CaseRun{0x00FF, 0x00FF, 121, 1}, CaseRun{0x0101, 0x012F, -1, 2},  CaseRun{0x0133, 0x0137, -1, 2},
    CaseRun{0x013A, 0x0148, -1, 2},  CaseRun{0x014B, 0x0177, -1, 2},  CaseRun{0x017A, 0x017E, -1, 2},
    CaseRun{0x01CE, 0x01DC, -1, 2},  CaseRun{0x01DF, 0x01EF, -1, 2},  CaseRun{0x01F9, 0x021F, -1, 2},
    CaseRun{0x0223, 0x0233, -1, 2},  CaseRun{0x03AC, 0x03AC, -38, 1}, CaseRun{0x03AD, 0x03AF, -37, 1},
    CaseRun{0x03B1, 0x03C1, -32, 1}, CaseRun{0x03C3, 0x03CB, -32, 1}, CaseRun{0x03CC, 0x03CC, -64, 1},
    CaseRun{0x03CD, 0x03CE, -63, 1}, CaseRun{0x0430, 0x044F, -32, 1}, CaseRun{0x0450, 0x045F, -80, 1},
    CaseRun{0x0461, 0x0481, -1, 2},  CaseRun{0x048B, 0x04BF, -1, 2},  CaseRun{0x04C2, 0x04CE, -1, 2},
    CaseRun{0x04D1, 0x0523, -1, 2},  CaseRun{0x0561, 0x0586, -48, 1}, CaseRun{0x1E01, 0x1E95, -1, 2},
    CaseRun{0x1EA1, 0x1EF9, -1, 2},  CaseRun{0x2170, 0x217F, -16, 1}, CaseRun{0x24D0, 0x24E9, -26, 1},
    CaseRun{0xFF41, 0xFF5A, -32, 1},
};

char FoldAscii(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}

}  // namespace

std::size_t CharacterCount(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < text.size(); i += DecodeAt(text, i).length) {
        ++count;
    }
    return count;
}

std::string_view Left(std::string_view text, std::size_t count) {
    std::size_t end = 0;
    for (; count > 0 && end < text.size(); --count) {
        end += DecodeAt(text, end).length;
    }
    return text.substr(0, end);
}

std::string_view AfterFirst(std::string_view text, std::size_t count) {
    return text.substr(Left(text, count).size());
}

std::string_view Right(std::string_view text, std::size_t count) {
    std::size_t start = text.size();
    for (; count > 0 && start > 0; --count) {
        start -= LengthBefore(text, start);
    }
    return text.substr(start);
}

bool IsUtf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const Decoded decoded = DecodeAt(text, i);
        if (!decoded.wellFormed) {
            return false;
        }
        i += decoded.length;
    }
    return true;
}

std::u16string ToUtf16(std::string_view text) {
    std::u16string wide;
    wide.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const Decoded decoded = DecodeAt(text, i);
        i += decoded.length;
        if (decoded.character < 0x10000) {
            wide.push_back(static_cast<char16_t>(decoded.character));
        } else {
            const char32_t offset = decoded.character - 0x10000;
            wide.push_back(static_cast<char16_t>(0xD800U + (offset >> 10U)));
            wide.push_back(static_cast<char16_t>(0xDC00U + (offset & 0x3FFU)));
        }
    }
    return wide;
}

std::string FromUtf16(std::u16string_view text) {
    std::string narrow;
    narrow.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t character = text[i];
        const bool high = character >= 0xD800 && character <= 0xDBFF;
        if (high && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
            character = 0x10000 + ((character - 0xD800) << 10U) + (char32_t{text[i + 1]} - 0xDC00);
            ++i;
        }
        Append(narrow, character);
    }
    return narrow;
}

char16_t FoldUnit(char16_t unit) {
    if (unit < 0x80) {
        return static_cast<char16_t>(FoldAscii(static_cast<char>(unit)));
    }
    for (const CaseRun& run : caseRuns) {
        if (unit >= run.first && unit <= run.last) {
            return (unit - run.first) % run.step == 0 ? static_cast<char16_t>(unit + run.distance) : unit;
        }
    }
    return unit;
}

std::string Fold(std::string_view text) {
    const bool ascii = std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (ascii) {
        std::string folded(text);
        std::ranges::transform(folded, folded.begin(), FoldAscii);
        return folded;
    }
    std::u16string wide = ToUtf16(text);
    std::ranges::transform(wide, wide.begin(), FoldUnit);
    return FromUtf16(wide);
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
    return a == b || Fold(a) == Fold(b);
}

bool ContainsIgnoringCase(std::string_view whole, std::string_view part) {
    return Fold(whole).find(Fold(part)) != std::string::npos;
}

std::vector<std::string_view> Split(std::string_view text, std::string_view separator) {
    std::vector<std::string_view> pieces;
    std::size_t start = 0;
    while (true) {
        const std::size_t end = text.find(separator, start);
        pieces.push_back(text.substr(start, end == std::string_view::npos ? end : end - start));
        if (end == std::string_view::npos) {
            return pieces;
        }
        start = end + separator.size();
    }
}

std::string_view Trim(std::string_view text, std::string_view characters) {
    const std::size_t first = text.find_first_not_of(characters);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

}  // namespace marlok::text
