#include "platform/Error.h"

#include "platform/Process.h"
#include "tests/platform/UrlSessionFixture.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <cerrno>
#include <clocale>
#include <cstring>

namespace orvane::test {

namespace {

/// A process in a desktop session in German, as the user interface library sets it up. The locale is compiled
/// here: a machine need not have it.
class GermanDesktopTest : public UrlSessionFixture {
protected:
    void SetUp() override {
        UrlSessionFixture::SetUp();
        platform::Process localedef;
        localedef.setLaunchPath("/usr/bin/localedef");
        localedef.setArguments({"-i", "de_DE", "-f", "UTF-8", (folder_.path() / "de_DE.UTF-8").string()});
        localedef.launch();
        ASSERT_EQ(localedef.waitUntilExit(), 0);
        ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
        ASSERT_STREQ(std::strerror(ENOENT), "Datei oder Verzeichnis nicht gefunden");
    }

    void TearDown() override { std::setlocale(LC_ALL, "C"); }

private:
    const TemporaryFolder folder_;
    const EnvironmentVariable locales_{"LOCPATH", folder_.path().string()};
    const EnvironmentVariable language_{"LANGUAGE", "de"};
};

TEST_F(GermanDesktopTest, ErrorsOfTheSystemAreDescribedInEnglish) {
    EXPECT_EQ(platform::posixError(ENOENT, "/opt/engine").localizedDescription(),
              "/opt/engine: No such file or directory (ENOENT)");
    EXPECT_EQ(platform::posixError(EACCES, "/opt").localizedDescription(),
              "/opt: Permission denied (EACCES)");
}

TEST_F(GermanDesktopTest, ErrorsOfATransferAreDescribedInEnglish) {
    const LoopbackServer server([](LoopbackConnection& connection) { connection.drop(); });
    const Record record = fetch(
        platform::UrlRequest{.url = server.url(), .httpMethod = "POST", .httpBody = longText(8'000'000)});
    ASSERT_TRUE(record.error);
    const std::string description = record.error->localizedDescription();
    EXPECT_TRUE(description.find("Connection reset by peer") != std::string::npos ||
                description.find("Broken pipe") != std::string::npos)
        << description;
}

TEST(UnknownErrorTest, AnUnknownErrnoValueIsNamedByItsNumber) {
    EXPECT_EQ(platform::errorNumberDescription(4095), "Unknown error 4095");
}

} // namespace

} // namespace orvane::test
