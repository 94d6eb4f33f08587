#pragma once

#include <cstdint>

namespace marlok {

/// A system error code as the Windows kernel numbers them; 0 is success.
using SystemError = std::uint32_t;

/// The codes that the program or its tests name.
namespace error {
inline constexpr SystemError success = 0;
inline constexpr SystemError invalidFunction = 1;
inline constexpr SystemError fileNotFound = 2;
inline constexpr SystemError pathNotFound = 3;
inline constexpr SystemError accessDenied = 5;
inline constexpr SystemError invalidHandle = 6;
inline constexpr SystemError invalidData = 13;
inline constexpr SystemError notSameDevice = 17;
inline constexpr SystemError noMoreFiles = 18;
inline constexpr SystemError writeProtected = 19;
inline constexpr SystemError notReady = 21;
inline constexpr SystemError dataError = 23;  ///< a bad sector
inline constexpr SystemError readFault = 30;
inline constexpr SystemError sharingViolation = 32;
inline constexpr SystemError lockViolation = 33;
inline constexpr SystemError handleDiskFull = 39;
inline constexpr SystemError notSupported = 50;
inline constexpr SystemError badNetworkPath = 53;
inline constexpr SystemError unexpectedNetworkError = 59;
inline constexpr SystemError networkNameGone = 64;
inline constexpr SystemError fileExists = 80;
inline constexpr SystemError invalidParameter = 87;
inline constexpr SystemError diskFull = 112;
inline constexpr SystemError invalidName = 123;
inline constexpr SystemError directoryNotEmpty = 145;
inline constexpr SystemError alreadyExists = 183;
inline constexpr SystemError nameTooLong = 206;
inline constexpr SystemError moreData = 234;
inline constexpr SystemError noMoreItems = 259;
inline constexpr SystemError invalidFolderName = 267;
inline constexpr SystemError cloudProviderNotRunning = 362;
inline constexpr SystemError unrecognizedVolume = 1005;
inline constexpr SystemError ioDevice = 1117;
inline constexpr SystemError replacedKept = 1175;         ///< of Replace: nothing has changed
inline constexpr SystemError replacementNotMoved = 1176;  ///< of Replace: nothing has changed
inline constexpr SystemError replacedMovedAway = 1177;    ///< of Replace: the old file lies under the backup's name
inline constexpr SystemError mappedFile = 1224;           ///< in use: a program has it mapped into its memory
inline constexpr SystemError requestAborted = 1235;
inline constexpr SystemError cannotAccessFile = 1920;  ///< a reparse point that no driver of this system handles
inline constexpr SystemError cannotResolveName = 1921;
inline constexpr SystemError encryptionFailed = 6000;
}  // namespace error

}  // namespace marlok
