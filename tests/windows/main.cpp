#include <gtest/gtest.h>
#include <windows.h>

#include "tests/windows/StandIn.h"
#include "tests/windows/WindowWatch.h"
#include "win32/machine/Com.h"

int main(int argc, char** argv) {
    if (marlok::test::IsStandIn()) {
        return marlok::test::RunStandIn();
    }
    const marlok::win32::Apartment apartment;
    testing::InitGoogleTest(&argc, argv);
    // The list of listeners owns it from here on.
    testing::UnitTest::GetInstance()->listeners().Append(new marlok::test::WindowWatch);
    return RUN_ALL_TESTS();
}
