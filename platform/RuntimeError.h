#pragma once

#include <stdexcept>
#include <string>

namespace marlok {

/// Numbers of run-time errors.
namespace runtimeerror {
inline constexpr int overflow = 6;
inline constexpr int outOfMemory = 7;
inline constexpr int internalError = 51;
inline constexpr int fileNotFound = 53;
inline constexpr int fileAlreadyExists = 58;
inline constexpr int diskFull = 61;
inline constexpr int permissionDenied = 70;
inline constexpr int pathFileAccess = 75;
inline constexpr int pathNotFound = 76;
inline constexpr int keyNotUnique = 35602;
}  // namespace runtimeerror

/// An error that ends the program unless a caller on the way traps it. It ends in the event dispatcher, which
/// reports number and description.
class RuntimeError : public std::runtime_error {
 public:
    RuntimeError(int number, const std::string& description) : std::runtime_error(description), number_(number) {}

    [[nodiscard]] int Number() const { return number_; }

 private:
    int number_;
};

}  // namespace marlok
