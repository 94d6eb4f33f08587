#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/RunReport.h"
#include "platform/Machine.h"

/// Folders that became empty when saved files were deleted. They are written down beside the program, one a line, and
/// go when it starts next: what is open in a window now may be gone by then.
namespace marlok {

/// False for what no line of the list is carried out for, whatever is there: see CarryOutPendingDeletions.
[[nodiscard]] bool MayBeQueued(std::string_view folder);

/// Writes the list anew. Returns `error::success` or why it is unchanged.
[[nodiscard]] SystemError QueueDeletions(Machine& machine, const std::vector<std::string>& folders);

/// Carries the list out, if there is one. It is used up first: should anything go wrong after that, some empty folders
/// stay, and the next start deletes nothing on an old list's word.
///
/// A line is carried out only when it is the full, plain path of a folder below the root of a drive or share, leads
/// through no link, and the folder neither is nor holds anything that ProtectedPlaces knows, nor any file or link at
/// any depth. Nothing but folders is ever removed. What is not there any more is passed over; every other line that is
/// not carried out is in the report, and so is a list that cannot be removed: it is not carried out at all.
/// @throws RuntimeError when the list is there and cannot be read.
[[nodiscard]] RunReport CarryOutPendingDeletions(Machine& machine);

}  // namespace marlok
