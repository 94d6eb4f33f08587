#include "win32/views/MessageFont.h"

#include <algorithm>

#include "win32/machine/Wide.h"

namespace marlok::win32 {

FontHandle MakeFont(const forms::Font& font, UINT dpi) {
    constexpr int pointsToTheInch = 72;
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    if (SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, dpi) == 0) {
        return {};
    }
    LOGFONTW made = metrics.lfMessageFont;
    if (!font.name.empty()) {
        const std::wstring name = ToWide(font.name).substr(0, LF_FACESIZE - 1);
        *std::copy(name.begin(), name.end(), made.lfFaceName) = L'\0';
    }
    if (font.size > 0) {
        made.lfHeight = -MulDiv(font.size, static_cast<int>(dpi), pointsToTheInch);
    }
    if (font.bold) {
        made.lfWeight = FW_BOLD;
    }
    return FontHandle(CreateFontIndirectW(&made));
}

}  // namespace marlok::win32
