#include "tools/ReportStream.h"

#include <gtest/gtest.h>
#include <sstream>
#include <vector>

namespace orvane::tools {
namespace {

std::vector<std::string> piecesOf(const std::string& text, std::uintmax_t largest = 1000) {
    std::istringstream stream(text);
    ReportStream bodies(stream, largest);
    std::vector<std::string> pieces;
    while (auto piece = bodies.next()) {
        pieces.push_back(*piece);
    }
    return pieces;
}

using Pieces = std::vector<std::string>;

TEST(ReportStreamTest, DividesBodiesWithAndWithoutLineBreaksBetween) {
    EXPECT_EQ(piecesOf(R"({"a": 1}{"b": {"c": 2}})"), (Pieces{R"({"a": 1})", R"({"b": {"c": 2}})"}));
    EXPECT_EQ(piecesOf("\n{\"a\": 1}\r\n\n{\"b\": 2}\n"), (Pieces{R"({"a": 1})", R"({"b": 2})"}));
    EXPECT_EQ(piecesOf("{\"a\":\n 1}{}"), (Pieces{"{\"a\":\n 1}", "{}"}));
    EXPECT_EQ(piecesOf(""), Pieces{});
}

TEST(ReportStreamTest, BracesAndQuotesInTextsDivideNothing) {
    EXPECT_EQ(piecesOf(R"({"a": "}{\"}"}{})"), (Pieces{R"({"a": "}{\"}"})", "{}"}));
    EXPECT_EQ(piecesOf(R"({"a": "\\"}{})"), (Pieces{R"({"a": "\\"})", "{}"}));
}

TEST(ReportStreamTest, ABodyThatBreaksOffTakesAlongItsLineAlone) {
    EXPECT_EQ(piecesOf("{\"a\": \"x\n{\"b\": 2}"), (Pieces{"{\"a\": \"x\n", "{\"b\": 2}"}));
    EXPECT_EQ(piecesOf("{\"a\": 1"), (Pieces{"{\"a\": 1"}));
}

TEST(ReportStreamTest, ALogIsOnePiece) {
    EXPECT_EQ(piecesOf("12:34:56: {\r\n12:34:57: }\r\n"), (Pieces{"12:34:56: {\r\n12:34:57: }\r\n"}));
}

TEST(ReportStreamTest, NothingGrowsWithoutBounds) {
    EXPECT_EQ(piecesOf("{" + std::string(25, ' '), 10).front().size(), 10U);
}

} // namespace
} // namespace orvane::tools
