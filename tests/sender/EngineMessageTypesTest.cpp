#include "sender/EngineMessageTypes.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace orvane {
namespace {

bool accepts(EngineMessageType type, const std::string& text) {
    return engineMessageKind(static_cast<std::int32_t>(type))->accepts(text);
}

TEST(EngineMessageTypesTest, EachStandsAtThePlaceOfItsNumberAndIsFoundByItsName) {
    std::int32_t number = 0;
    for (const EngineMessageKind& kind : kEngineMessageKinds) {
        EXPECT_EQ(static_cast<std::int32_t>(kind.type), number);
        EXPECT_EQ(engineMessageKind(number), &kind);
        EXPECT_EQ(engineMessageKind(kind.name), &kind) << "the name stands twice: " << kind.name;
        EXPECT_FALSE(kind.text.empty());
        ++number;
    }
    EXPECT_EQ(number, kFirstUnassignedEngineMessageType);
}

TEST(EngineMessageTypesTest, OtherNumbersAndNamesAreNone) {
    for (const std::int32_t type :
         {kFirstUnassignedEngineMessageType, -1, std::numeric_limits<std::int32_t>::max(),
          std::numeric_limits<std::int32_t>::min()}) {
        EXPECT_EQ(engineMessageKind(type), nullptr) << type;
    }
    for (const char* name : {"", "Progress", "steps", "cancelButton", "0"}) {
        EXPECT_EQ(engineMessageKind(name), nullptr) << name;
    }
}

TEST(EngineMessageTypesTest, ANumberHasItsRange) {
    for (const auto& [type, last] :
         std::vector<std::pair<EngineMessageType, int>>{{EngineMessageType::progress, 100},
                                                        {EngineMessageType::network, 2},
                                                        {EngineMessageType::cancelButton, 1}}) {
        EXPECT_TRUE(accepts(type, "0"));
        EXPECT_TRUE(accepts(type, std::to_string(last)));
        EXPECT_FALSE(accepts(type, std::to_string(last + 1)));
        for (const char* text : {"", "-1", " 0", "0\n", "zero"}) {
            EXPECT_FALSE(accepts(type, text)) << text;
        }
    }
}

TEST(EngineMessageTypesTest, AnEndIsOneOfThreeNumbersOrNoNumber) {
    for (const char* text : {"0", "1", "3", "", "No room on the disk"}) {
        EXPECT_TRUE(accepts(EngineMessageType::end, text)) << text;
    }
    EXPECT_FALSE(accepts(EngineMessageType::end, "2"));
    EXPECT_FALSE(accepts(EngineMessageType::end, "-1"));
}

TEST(EngineMessageTypesTest, ARestartBeginsWithTwoDigits) {
    EXPECT_TRUE(accepts(EngineMessageType::restart, "07"));
    EXPECT_TRUE(accepts(EngineMessageType::restart, "12Again?"));
    for (const char* text : {"", "7", " 7 ?", "7x"}) {
        EXPECT_FALSE(accepts(EngineMessageType::restart, text)) << text;
    }
}

TEST(EngineMessageTypesTest, StepsAndErrorsAreAnyText) {
    for (const char* text : {"", "0", "Copying files"}) {
        EXPECT_TRUE(accepts(EngineMessageType::step, text));
        EXPECT_TRUE(accepts(EngineMessageType::error, text));
    }
}

} // namespace
} // namespace orvane
