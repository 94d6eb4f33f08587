#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/Program.h"

namespace marlok {

/// Which of `items` occur nowhere in `text` (letter case matters; an item inside a longer line occurs), in their order,
/// empty ones left out. An item is sought in `text` as it stands: what is added together does not count. Takes time
/// proportional to `text` and to `items`, not to their product.
[[nodiscard]] std::vector<std::string_view> NotOccurring(std::string_view text, const std::vector<std::string>& items);

/// Adds to a location's list of original paths, at its end, those of `originals` that do not occur in it yet; makes the
/// list, and the folder it lies in, when missing. The list is the old one or the new one at any moment. Returns
/// `error::success` or why the list could not be read or written; it is then unchanged.
[[nodiscard]] SystemError AddToOriginalList(Program& program, const std::string& listPath,
                                            const std::vector<std::string>& originals);

}  // namespace marlok
