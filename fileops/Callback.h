#pragma once

#include "forms/Controls.h"
#include "platform/FileSystem.h"

namespace marlok {

/// What the kernel calls while it copies a file: shows the bytes copied so far on `bar`, and sets its range when a file
/// begins. The bar keeps its Max for an empty file.
void CopyProgress(forms::ProgressBar& bar, const CopyProgressInfo& info);

}  // namespace marlok
