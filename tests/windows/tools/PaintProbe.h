#pragma once

#include <windows.h>

namespace marlok::test {

struct PaintTimes {
    int painted = 0;             ///< how often the window has painted itself when it was asked to
    ULONGLONG longest = 0;       ///< milliseconds that it took at most, one that is not over included
    ULONGLONG longestReply = 0;  ///< milliseconds that a message took at most
    bool gone = false;           ///< the window went before the time was over
};

/// For `milliseconds`, declares the window and everything in it invalid again and again, at least 50 milliseconds
/// apart, and watches how long it takes until nothing of it is left to be painted.
[[nodiscard]] PaintTimes ProbePainting(HWND window, ULONGLONG milliseconds);

}  // namespace marlok::test
