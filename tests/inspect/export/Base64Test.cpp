#include "inspect/export/Base64.h"

#include <gtest/gtest.h>

#include <string_view>

namespace consolidator::inspect::test {

namespace {

// The examples of RFC 4648, section 10.
TEST(Base64, PadsToGroups) {
    EXPECT_EQ(base64(""), "");
    EXPECT_EQ(base64("f"), "Zg==");
    EXPECT_EQ(base64("fo"), "Zm8=");
    EXPECT_EQ(base64("foo"), "Zm9v");
    EXPECT_EQ(base64("foob"), "Zm9vYg==");
    EXPECT_EQ(base64("fooba"), "Zm9vYmE=");
    EXPECT_EQ(base64("foobar"), "Zm9vYmFy");
}

TEST(Base64, TakesAnyByte) {
    EXPECT_EQ(base64(std::string_view("\0\xFF\xFE\xFB\xF0", 5)), "AP/++/A=");
    EXPECT_EQ(base64("\xFF\xFF\xFF"), "////");
}

} // namespace

} // namespace consolidator::inspect::test
