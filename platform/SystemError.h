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
inline constexpr SystemError sharingViolation = 32;
inline constexpr SystemError lockViolation = 33;
inline constexpr SystemError handleDiskFull = 39;
inline constexpr SystemError notSupported = 50;
inline constexpr SystemError badNetworkPath = 53;
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
inline constexpr SystemError ioDevice = 1117;
}  // namespace error

}  // namespace marlok
