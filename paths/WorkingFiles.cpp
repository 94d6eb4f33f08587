#include "paths/WorkingFiles.h"

#include "text/Text.h"

namespace marlok::workingfile {

namespace {

/// The computer's name as part of a file's: what a file's cannot hold becomes "_".
std::string Named(std::string_view computer, std::string_view suffix) {
    std::string name(prefix);
    for (const char c : computer) {
        const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-';
        name += plain || static_cast<unsigned char>(c) >= 0x80 ? c : '_';
    }
    return name.append(suffix);
}

}  // namespace

std::string JournalOf(std::string_view computer) {
    return Named(computer, ".run");
}

std::string PartOf(std::string_view computer) {
    return Named(computer, ".part");
}

bool IsWorkingFile(std::string_view name) {
    return name.size() > prefix.size() && name.front() == '~' &&
           text::EqualIgnoringCase(name.substr(0, prefix.size()), prefix);
}

}  // namespace marlok::workingfile
