#pragma once

#include <string>

#include "platform/Desktop.h"

namespace marlok {

/// Answers of AskEntryOrFile, with the numbers of the buttons they stand on.
enum class EntryOrFile { onlyEntry = button::abort, fileAlso = button::retry, cancel = button::ignore };

/// Asks whether only an entry of a list is to go or the file saved for it too: a box with the buttons "Only Entry",
/// "File Also" and "Cancel", in this order.
[[nodiscard]] EntryOrFile AskEntryOrFile(Desktop& desktop, const std::string& prompt, const std::string& title);

}  // namespace marlok
