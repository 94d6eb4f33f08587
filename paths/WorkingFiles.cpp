#include "paths/WorkingFiles.h"

#include "text/Text.h"

namespace marlok::workingfile {

bool IsWorkingFile(std::string_view name) {
    return name.size() > prefix.size() && name.front() == '~' &&
           text::EqualIgnoringCase(name.substr(0, prefix.size()), prefix);
}

}  // namespace marlok::workingfile
