#include "platform/Error.h"

#include "tests/platform/PlatformErrors.h"

#include <cerrno>
#include <gtest/gtest.h>

namespace orvane::test {

namespace {

using platform::Error;

TEST(ErrorTest, KeepsDomainCodeAndDescription) {
    const Error error("", 408, "Request timeout");
    EXPECT_EQ(error.domain(), "");
    EXPECT_EQ(error.code(), 408);
    EXPECT_EQ(error.localizedDescription(), "Request timeout");
    EXPECT_STREQ(error.what(), "Request timeout");
}

TEST(ErrorTest, RendersItselfForDevelopersAsThePlatformsErrorsDo) {
    EXPECT_EQ(Error("", 408, "Request timeout").debugDescription(), platformErrors().timedOutRendered);
}

TEST(ErrorTest, KeepsARenderingOfThePlatformsOwn) {
    EXPECT_EQ(Error("Some", 1, "one", "rendered").debugDescription(), "rendered");
}

TEST(ErrorTest, AnErrorOfTheCLibraryNamesItsSubjectAndReason) {
    const Error error = platform::posixError(ENOENT, "/opt/engine");
    EXPECT_EQ(error.domain(), "POSIX");
    EXPECT_EQ(error.code(), ENOENT);
    EXPECT_EQ(error.localizedDescription(), "/opt/engine: " + platformErrors().noSuchFile);
}

TEST(ErrorTest, TheGenericWordingNamesDomainAndCode) {
    const std::string text = platform::genericErrorDescription("DownloadError", 0);
    EXPECT_NE(text.find("DownloadError"), std::string::npos)
        << text; // around it, words of the user's language
    EXPECT_NE(text.find("0."), std::string::npos) << text;
}

TEST(ErrorTest, ACopyIsIndependent) {
    Error first("a", 1, "one");
    const Error copy = first;
    first = Error("b", 2, "two");
    EXPECT_EQ(copy.localizedDescription(), "one");
    EXPECT_EQ(first.localizedDescription(), "two");
}

} // namespace

} // namespace orvane::test
