#include "text/Surrogates.h"

#include <optional>

#include "text/Text.h"

namespace marlok::text {

namespace {

constexpr std::size_t encodedLength = 3;  ///< bytes of a surrogate that is carried in a text
constexpr std::size_t escapeLength = 6;   ///< of "<D83D>"
constexpr std::string_view escapedBracket = "<003C>";
constexpr std::string_view hexDigits = "0123456789ABCDEF";

unsigned ByteAt(std::string_view text, std::size_t at) {
    return static_cast<unsigned char>(text[at]);
}

/// The surrogate that is carried at `at`, if one is.
std::optional<char16_t> CarriedAt(std::string_view text, std::size_t at) {
    if (at + encodedLength > text.size() || ByteAt(text, at) != 0xED || ByteAt(text, at + 1) < 0xA0 ||
        ByteAt(text, at + 1) > 0xBF || ByteAt(text, at + 2) < 0x80 || ByteAt(text, at + 2) > 0xBF) {
        return std::nullopt;
    }
    return static_cast<char16_t>(0xD000U | ((ByteAt(text, at + 1) & 0x3FU) << 6U) | (ByteAt(text, at + 2) & 0x3FU));
}

std::string Escaped(char16_t surrogate) {
    std::string escape = "<";
    for (unsigned shift = 16; shift > 0;) {
        shift -= 4;
        escape += hexDigits[(static_cast<unsigned>(surrogate) >> shift) & 0xFU];
    }
    return escape + ">";
}

/// What the escape at `at` stands for; nothing when none begins there.
std::optional<std::string> EscapeAt(std::string_view text, std::size_t at) {
    const std::string_view escape = text.substr(at, escapeLength);
    if (escape.size() < escapeLength || escape.front() != '<' || escape.back() != '>') {
        return std::nullopt;
    }
    if (escape == escapedBracket) {
        return "<";
    }
    unsigned unit = 0;
    for (const char digit : escape.substr(1, 4)) {
        const std::size_t value = hexDigits.find(digit);
        if (value == std::string_view::npos) {
            return std::nullopt;
        }
        unit = unit * 16 + static_cast<unsigned>(value);
    }
    if (unit < 0xD800 || unit > 0xDFFF) {
        return std::nullopt;
    }
    const auto surrogate = static_cast<char16_t>(unit);
    return FromUtf16(std::u16string_view(&surrogate, 1));
}

}  // namespace

std::string EscapeSurrogates(std::string_view text) {
    if (text.find_first_of("<\xED") == std::string_view::npos) {
        return std::string(text);  // nearly always, and lists grow long
    }
    std::string escaped;
    escaped.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        if (const auto surrogate = CarriedAt(text, at)) {
            escaped += Escaped(*surrogate);
            at += encodedLength;
        } else if (EscapeAt(text, at)) {
            escaped += escapedBracket;
            ++at;
        } else {
            escaped += text[at++];
        }
    }
    return escaped;
}

std::string UnescapeSurrogates(std::string_view text) {
    if (text.find('<') == std::string_view::npos) {
        return std::string(text);
    }
    std::string plain;
    plain.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        if (const auto meant = EscapeAt(text, at)) {
            plain += *meant;
            at += escapeLength;
        } else {
            plain += text[at++];
        }
    }
    return plain;
}

}  // namespace marlok::text
