#include "paths/ProgramFiles.h"

#include <algorithm>

#include "paths/Path.h"
#include "text/Text.h"

namespace marlok {

bool programfile::IsProgramFile(std::string_view name) {
    return std::ranges::any_of(all, [name](const char* own) { return text::EqualIgnoringCase(own, name); });
}

ProgramFolder::ProgramFolder(std::string_view path) : path_(AddBackslash(path)) {}

}  // namespace marlok
