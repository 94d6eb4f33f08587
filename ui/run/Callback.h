#pragma once

#include "forms/Controls.h"
#include "platform/FileSystem.h"

/// The progress bar of a copy.
namespace marlok {

/// What the kernel calls while it copies a file: shows the bytes copied so far on `bar`, and sets its range when a file
/// begins. The bar keeps its Max for an empty file.
void CopyProgress(forms::ProgressBar& bar, const CopyProgressInfo& info);

/// Counts files on `bar` from 1 to 99 and starts again at 1: it shows that something goes on.
void CountCopiedFile(forms::ProgressBar& bar);

}  // namespace marlok
