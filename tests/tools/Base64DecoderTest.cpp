#include "tools/Base64Decoder.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

TEST(Base64DecoderTest, ReadsEveryPadding) {
    EXPECT_EQ(base64Decoded(""), "");
    EXPECT_EQ(base64Decoded("Zg=="), "f");
    EXPECT_EQ(base64Decoded("Zm8="), "fo");
    EXPECT_EQ(base64Decoded("Zm9v"), "foo");
    EXPECT_EQ(base64Decoded("Zm9vYmE="), "fooba");
    EXPECT_EQ(base64Decoded("+/+/"), "\xFB\xFF\xBF");
}

TEST(Base64DecoderTest, RefusesEverythingElse) {
    for (const char* text :
         {"Z", "Zg=", "Zg==Zg==", "Z===", "====", "Zm9\n", "Zm9-", "=m9v", "Zm=v", "Zm9\xC3"}) {
        EXPECT_EQ(base64Decoded(text), std::nullopt) << text;
    }
}

} // namespace
} // namespace orvane::tools
