#include <gtest/gtest.h>
#include <windows.h>

#include "platform/win32/Com.h"
#include "tests/windows/StandIn.h"

int main(int argc, char** argv) {
    if (marlok::test::IsStandIn()) {
        return marlok::test::RunStandIn();
    }
    const marlok::win32::Apartment apartment;
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
