#include "ui/run/Callback.h"

namespace marlok {

namespace {

/// The last value that the counting bar shows before it starts again at 1.
constexpr int lastCount = 99;

}  // namespace

void CopyProgress(forms::ProgressBar& bar, const CopyProgressInfo& info) {
    switch (info.reason) {
        case CopyProgressInfo::Reason::chunkFinished:
            bar.Value = static_cast<float>(info.totalTransferred);
            break;
        case CopyProgressInfo::Reason::streamSwitch:
            bar.Value = 0.0F;
            bar.Min = 0.0F;
            if (info.totalFileSize != 0) {
                bar.Max = static_cast<float>(info.totalFileSize);
            }
            break;
    }
}

void CountCopiedFile(forms::ProgressBar& bar) {
    const int shown = static_cast<int>(bar.Value.Get());
    bar.Value = static_cast<float>((shown == lastCount ? 0 : shown) + 1);
}

}  // namespace marlok
