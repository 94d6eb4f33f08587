#include "paths/FileAddress.h"

#include <gtest/gtest.h>

namespace marlok::test {
namespace {

TEST(FileAddressTest, AFileOnADriveHasThreeSlashes) {
    EXPECT_EQ(FileAddress(R"(C:\Marlok\Help.html)"), "file:///C:/Marlok/Help.html");
}

TEST(FileAddressTest, AFileOfAServerHasItsName) {
    EXPECT_EQ(FileAddress(R"(\\server\share\Help.html)"), "file://server/share/Help.html");
}

TEST(FileAddressTest, WhatHasAMeaningInAnAddressIsEscaped) {
    EXPECT_EQ(FileAddress(R"(C:\50% off #1\a b.html)"), "file:///C:/50%25%20off%20%231/a%20b.html");
    EXPECT_EQ(FileAddress(R"(C:\R&D ('x')\~a_b-c.html)"), "file:///C:/R%26D%20%28%27x%27%29/~a_b-c.html");
}

TEST(FileAddressTest, OtherScriptsAreEscapedByteByByte) {
    EXPECT_EQ(FileAddress("C:\\Gr\u00FC\u00DFe\\a.html"), "file:///C:/Gr%C3%BC%C3%9Fe/a.html");
}

}  // namespace
}  // namespace marlok::test
