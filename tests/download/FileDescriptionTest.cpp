#include "tests/support/CaptureStandardOutput.h"
#include "tests/support/Gate.h"
#include "tests/support/RunTest.h"

namespace orvane::test {
namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

constexpr char kTarget[] = "/downloadinstaller?os=darwin&product=varlen";
constexpr char kFailure[] = "Unable to download orvane file description: ";

const FileDownloadInfo& describedEngine() {
    static const FileDownloadInfo info{.URL = "https://downloads.example/varlen-setup",
                                       .Checksum = "3f2a",
                                       .ChecksumAlgorithm = "sha256",
                                       .EncryptedFileChecksum = "9b8a",
                                       .EncryptionAlgorithm = "xor",
                                       .Size = 48211968,
                                       .Version = "14.2.7"};
    return info;
}

std::string document(const std::string& size = "48211968", const std::string& extra = "") {
    return R"({"URL": "https://downloads.example/varlen-setup", "Checksum": "3f2a", )"
           R"("ChecksumAlgorithm": "sha256", "EncryptedFileChecksum": "9b8a", )"
           R"("EncryptionAlgorithm": "xor", "Size": )" +
           size + extra + R"(, "Version": "14.2.7"})";
}

class FileDescriptionTest : public RunTest {
protected:
    bool fetch(const std::string& body, const std::string& status = "200 OK") {
        server.answer(kTarget, response(body, status));
        return controller->downloadFileInfo();
    }

    /// The fetch failed on the way: the log shows the platform's error in its optional form.
    void expectTransportFailure() const {
        const Lines lines = logLines();
        ASSERT_EQ(lines.size(), 1U);
        const std::string& line = lines.front();
        EXPECT_TRUE(line.starts_with(std::string(kFailure) + "Optional(Error Domain=")) << line;
        EXPECT_NE(line.find(" Code="), std::string::npos) << line;
        EXPECT_TRUE(line.ends_with("\")")) << line;
        EXPECT_EQ(controller->orvaneDownloadInfo.load(), std::nullopt);
    }
};

TEST_F(FileDescriptionTest, ItIsFetchedLoggedAndKept) {
    EXPECT_TRUE(fetch(document()));
    EXPECT_EQ(controller->orvaneDownloadInfo.load(), describedEngine());
    EXPECT_EQ(logLines(), Lines{"Orvane download info is " + document()});
}

TEST_F(FileDescriptionTest, TheRequestIsAPlainGet) {
    EXPECT_TRUE(fetch(document()));
    ASSERT_EQ(server.requests().size(), 1U);
    const std::string request = server.requests().front();
    EXPECT_TRUE(request.starts_with("GET /downloadinstaller?os=darwin&product=varlen HTTP/")) << request;
    EXPECT_TRUE(request.ends_with("\r\n\r\n")) << request;
    EXPECT_EQ(request.find("Content-"), std::string::npos) << request;
}

TEST_F(FileDescriptionTest, NothingIsShownToTheUser) {
    EXPECT_TRUE(fetch(document()));
    EXPECT_FALSE(fetch("no description"));
    EXPECT_EQ(desktop.waitingMainItems(), 0U);
    EXPECT_EQ(journal(), Lines{});
}

TEST_F(FileDescriptionTest, OtherKeysAreIgnored) {
    EXPECT_TRUE(fetch(document("48211968", R"(, "Comment": "new")")));
    EXPECT_EQ(controller->orvaneDownloadInfo.load(), describedEngine());
}

TEST_F(FileDescriptionTest, APageIsLoggedWholeAndRefused) {
    const std::string page = "<html>\n<h1>404 - Not Found é</h1>\n</html>\n";
    EXPECT_FALSE(fetch(page, "404 Not Found"));
    const Lines lines = logLines();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0], "Orvane download info is " + page);
    EXPECT_TRUE(lines[1].starts_with(std::string(kFailure) + "The document is not valid JSON: ")) << lines[1];
}

TEST_F(FileDescriptionTest, AnEmptyBodyIsRefused) {
    EXPECT_FALSE(fetch(""));
    EXPECT_EQ(logLines().size(), 2U);
    EXPECT_EQ(logLines().front(), "Orvane download info is ");
}

TEST_F(FileDescriptionTest, AValueOfTheWrongTypeIsRefusedWithoutTheOptionalForm) {
    for (const char* size : {"\"123\"", "12.5"}) {
        EXPECT_FALSE(fetch(document(size)));
        EXPECT_EQ(logLines().back(),
                  std::string(kFailure) + "The value of Size is not a whole number of 64 bits");
    }
}

TEST_F(FileDescriptionTest, AFailureLeavesAnEarlierDescriptionAlone) {
    EXPECT_TRUE(fetch(document()));
    EXPECT_FALSE(fetch("{}"));
    EXPECT_EQ(logLines().back(), std::string(kFailure) + "The key URL is missing");
    EXPECT_EQ(controller->orvaneDownloadInfo.load(), describedEngine());
}

TEST_F(FileDescriptionTest, TheStatusIsNotLookedAt) {
    for (const char* status : {"404 Not Found", "500 Internal Server Error", "203 Other"}) {
        controller->orvaneDownloadInfo.store(std::nullopt);
        EXPECT_TRUE(fetch(document(), status)) << status;
        EXPECT_EQ(controller->orvaneDownloadInfo.load(), describedEngine()) << status;
    }
}

TEST_F(FileDescriptionTest, NothingIsKeptBetweenTwoFetches) {
    for (const char* size : {"1", "2"}) {
        const std::string body = document(size);
        server.answer(kTarget, "HTTP/1.1 200 OK\r\nCache-Control: max-age=3600\r\nContent-Length: " +
                                   std::to_string(body.size()) + "\r\n\r\n" + body);
        EXPECT_TRUE(controller->downloadFileInfo());
    }
    EXPECT_EQ(controller->orvaneDownloadInfo.load()->Size, 2);
    EXPECT_EQ(server.connectionCount(), 2);
}

TEST_F(FileDescriptionTest, WithoutAServerThePlatformsErrorIsLogged) {
    deployment.values.fileDescriptionUrl = std::string(TestDeployment::kNobody) + kTarget;
    EXPECT_FALSE(controller->downloadFileInfo());
    expectTransportFailure();
}

TEST_F(FileDescriptionTest, ABodyThatBreaksOffIsNoDescription) {
    server.answer(kTarget, [](LoopbackConnection& connection) {
        const std::string whole = response(document());
        connection.send(whole.substr(0, whole.size() - 10));
        connection.drop();
    });
    EXPECT_FALSE(controller->downloadFileInfo());
    expectTransportFailure();
}

TEST_F(FileDescriptionTest, WithoutAnAnswerInTimeTheRunGoesOnAndALateAnswerChangesNothing) {
    deployment.values.fileDescriptionWait = 1s;
    // Whoever waits by another limit finds the server tired of waiting.
    deployment.values.downloadTimeout = 1h;
    deployment.values.crashReportWait = 1h;
    deployment.values.crashReportTimeout = 1h;
    const Gate mayAnswer;
    const Gate isAnswered;
    server.answer(kTarget, [mayAnswer, isAnswered](LoopbackConnection& connection) {
        EXPECT_TRUE(mayAnswer.wait());
        EXPECT_TRUE(connection.send(response(document())));
        connection.waitForClientToLeave();
        isAnswered.open();
    });
    EXPECT_FALSE(controller->downloadFileInfo());
    mayAnswer.open();
    EXPECT_TRUE(isAnswered.wait());
    EXPECT_EQ(logLines(),
              Lines{std::string(kFailure) + "Optional(Error Domain= Code=408 \"Request timeout\")"});
    EXPECT_EQ(controller->orvaneDownloadInfo.load(), std::nullopt);
}

TEST_F(FileDescriptionTest, WithoutALogTheAnswersAreTheSame) {
    withoutLog();
    CaptureStandardOutput output;
    EXPECT_TRUE(fetch(document()));
    EXPECT_EQ(controller->orvaneDownloadInfo.load(), describedEngine());
    EXPECT_FALSE(fetch("no description"));
    EXPECT_FALSE(fetch("\xFF"));
    deployment.values.fileDescriptionUrl = std::string(TestDeployment::kNobody) + kTarget;
    EXPECT_FALSE(controller->downloadFileInfo());
    EXPECT_EQ(output.finish(), "");
}

TEST_F(FileDescriptionTest, ABodyThatIsNotUtf8IsInvalidInputWhenItIsToBeLogged) {
    EXPECT_DEATH(fetch("caf\xE9"), "invalid input: the file description is not valid UTF-8");
}

TEST_F(FileDescriptionTest, AnAddressThatIsNoUrlIsAProgrammingError) {
    deployment.values.fileDescriptionUrl = "https://two words";
    EXPECT_DEATH(controller->downloadFileInfo(), "a request's address is not a URL: https://two words");
}

} // namespace
} // namespace orvane::test
