// Any bytes: written down and read back they are the same, and what was valid but for its surrogates is valid then.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "text/Surrogates.h"
#include "text/Text.h"

namespace text = marlok::text;

namespace {

bool HoldsSurrogate(const std::string& bytes) {
    for (std::size_t at = bytes.find('\xED'); at != std::string::npos; at = bytes.find('\xED', at + 1)) {
        if (at + 1 < bytes.size() && static_cast<unsigned char>(bytes[at + 1]) >= 0xA0) {
            return true;
        }
    }
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(data, data + size);
    const std::string escaped = text::EscapeSurrogates(bytes);
    if (text::UnescapeSurrogates(escaped) != bytes) {
        std::abort();
    }
    if (text::IsUtf8(bytes) && (!text::IsUtf8(escaped) || HoldsSurrogate(escaped))) {
        std::abort();
    }
    return 0;
}
