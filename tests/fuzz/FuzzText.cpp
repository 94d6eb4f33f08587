// Any bytes: what is well formed survives the way to UTF-16 and back, and cutting adds up to the whole.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "paths/Path.h"
#include "text/Text.h"

namespace text = marlok::text;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(data, data + size);
    const std::string once = text::FromUtf16(text::ToUtf16(bytes));
    if (!text::IsUtf8(once) || text::ToUtf16(once) != text::ToUtf16(bytes)) {
        std::abort();
    }
    const std::size_t count = text::CharacterCount(bytes);
    const std::size_t half = count / 2;
    if (std::string(text::Left(bytes, half)) + std::string(text::AfterFirst(bytes, half)) != bytes) {
        std::abort();
    }
    if (text::IsUtf8(bytes) && text::CharacterCount(text::Right(bytes, half)) != half) {
        std::abort();
    }
    static_cast<void>(HasThreeLetterExtension(bytes));
    static_cast<void>(text::Fold(bytes));
    return 0;
}
