#include "text/Lines.h"

#include "text/Text.h"

namespace marlok::text {

std::vector<std::string> SplitLines(std::string_view text) {
    const std::vector<std::string_view> pieces = Split(text, "\r\n");
    return {pieces.begin(), pieces.end()};
}

std::string JoinLines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text.append(line).append("\r\n");
    }
    return text;
}

}  // namespace marlok::text
