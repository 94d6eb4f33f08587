#include "tests/windows/tools/Deadline.h"

#include "tests/windows/tools/Console.h"

namespace marlok::test {

NotYet::NotYet(const std::wstring& what) : NotYet(ToUtf8(what)) {}

Deadline::Deadline(const std::wstring& seconds)
    : end_(GetTickCount64() + static_cast<ULONGLONG>(std::stod(seconds) * 1000)) {}

}  // namespace marlok::test
