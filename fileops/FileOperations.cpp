#include "fileops/FileOperations.h"

namespace marlok {

SystemError CopyThisFile(FileSystem& files, const std::string& source, const std::string& destination) {
    return files.Copy(source, destination, copyflag::none, nullptr);
}

SystemError CopyWithProgress(FileSystem& files, const std::string& source, const std::string& destination,
                             std::uint32_t flags, const CopyProgressRoutine& progress) {
    return files.Copy(source, destination, flags | copyflag::restartable, progress);
}

SystemError CopyPlain(FileSystem& files, const std::string& source, const std::string& destination,
                      std::uint32_t flags) {
    return files.Copy(source, destination, flags, nullptr);
}

}  // namespace marlok
