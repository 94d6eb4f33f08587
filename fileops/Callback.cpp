#include "fileops/Callback.h"

namespace marlok {

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

}  // namespace marlok
