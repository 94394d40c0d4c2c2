#include "tools/Verifier.h"

#include "tests/support/TestVendor.h"
#include "tools/Reports.h"
#include "tools/ToolError.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orvane::tools {
namespace {

const std::string kDescription = "/downloadinstaller?os=darwin&product=varlen";
const std::string kEngine = "#!/bin/sh\necho an engine long enough for its key\n";

class VerifierTest : public testing::Test {
protected:
    Verification verification(const std::vector<std::string>& bootstrappers = {"14.0.0"}) const {
        return verify({.url = vendor_.origin() + kDescription, .bootstrappers = bootstrappers});
    }

    static std::optional<Verdict> verdictOf(const Verification& result, const std::string& check) {
        for (const Finding& finding : result.findings) {
            if (finding.check == check) {
                return finding.verdict;
            }
        }
        return std::nullopt;
    }

    test::TestVendor vendor_;
};

TEST_F(VerifierTest, WhatIsPublishedWellIsAcceptedByItsMajorVersionAlone) {
    for (const std::string cipher : {"", "xor", "pkg"}) {
        const FileDownloadInfo info = vendor_.publishEngine(cipher == "pkg" ? "xar!" : kEngine, cipher);
        ASSERT_EQ(info.Version.substr(0, 3), "14.");
        const Verification result = verification({"14.9", "13.0", "014"});
        EXPECT_FALSE(result.hasFailed()) << verificationText(result);
        EXPECT_FALSE(result.isAccepted());
        ASSERT_EQ(result.answers.size(), 3U);
        EXPECT_TRUE(result.answers[0].accepts);
        EXPECT_FALSE(result.answers[1].accepts);
        EXPECT_FALSE(result.answers[2].accepts);
        EXPECT_TRUE(verification().isAccepted());
    }
}

TEST_F(VerifierTest, FetchesWhatABootstrapperFetches) {
    vendor_.publishEngine(kEngine, "xor");
    verification();
    const auto requests = vendor_.requests();
    ASSERT_EQ(requests.size(), 4U); // each a second time for status, headers and certificate
    EXPECT_EQ(requests[0], kDescription);
    EXPECT_EQ(requests[1], kDescription);
    EXPECT_TRUE(requests[2].ends_with(".enc")) << requests[2];
    EXPECT_EQ(requests[3], requests[2]);
}

TEST_F(VerifierTest, APageInPlaceOfTheDescriptionIsRefused) {
    vendor_.setFaults(R"({"/downloadinstaller": {"status": 503, "page": "<h1>Busy</h1>\nLater"}})");
    const Verification result = verification();
    EXPECT_TRUE(result.fetched);
    EXPECT_TRUE(result.hasFailed());
    EXPECT_TRUE(result.findings.back().text.ends_with(" (HTTP status 503, first line: <h1>Busy</h1>)"))
        << result.findings.back().text;
    EXPECT_FALSE(result.answers.at(0).accepts);
}

TEST_F(VerifierTest, ADescriptionThatIsNotUtf8IsRefused) {
    vendor_.answerDescriptionWith("\xFF");
    EXPECT_TRUE(verification().findings.back().text.starts_with("it is not valid UTF-8: bootstrappers stop"));
}

TEST_F(VerifierTest, ADescriptionThatNobodyAcceptsLeavesItsEngineUnfetched) {
    FileDownloadInfo info = vendor_.publishEngine(kEngine, "xor");
    info.ChecksumAlgorithm = "SHA256";
    vendor_.describe(info);
    EXPECT_TRUE(verification().hasFailed());
    EXPECT_EQ(vendor_.requests(), (std::vector<std::string>{kDescription, kDescription}));
}

TEST_F(VerifierTest, AnotherEngineThanTheDescribedOneIsRefused) {
    FileDownloadInfo info = vendor_.publishEngine(kEngine, "");
    info.Checksum.back() = info.Checksum.back() == '0' ? '1' : '0';
    vendor_.describe(info);
    const Verification result = verification();
    EXPECT_EQ(verdictOf(result, "transferred"), Verdict::failed);
    EXPECT_EQ(result.findings.back().text, "HTTP status 200, first line: #!/bin/sh");
    EXPECT_TRUE(result.fetched);
}

TEST_F(VerifierTest, ReportsHowWhatIsPublishedIsServed) {
    vendor_.publishEngine(kEngine, "xor");
    vendor_.setFaults(R"({"/downloadinstaller": {"headers": {"Cache-Control": "no-store"}}})");
    const Verification result = verification();
    EXPECT_EQ(verdictOf(result, "description-status"), Verdict::good);
    EXPECT_EQ(verdictOf(result, "description-cache"), Verdict::good);
    EXPECT_EQ(verdictOf(result, "description-certificate"), Verdict::good);
    EXPECT_EQ(verdictOf(result, "engine-certificate"), Verdict::good);
    EXPECT_EQ(verdictOf(result, "engine-cache"), Verdict::warning);
    EXPECT_EQ(verdictOf(result, "engine-length"), Verdict::good);
    EXPECT_TRUE(result.isAccepted());
}

TEST_F(VerifierTest, ChecksACandidateThatNoServerAnswersWithYet) {
    FileDownloadInfo info = vendor_.publishEngine(kEngine, "xor");
    vendor_.answerDescriptionWith("");
    const VerifyOptions options{.bootstrappers = {"14.0.0"}};
    EXPECT_TRUE(verifyCandidate(info, options).isAccepted());
    for (const std::string& request : vendor_.requests()) {
        EXPECT_NE(request, kDescription);
    }
    info.EncryptedFileChecksum = info.Checksum;
    EXPECT_FALSE(verifyCandidate(info, options).isAccepted());
}

TEST_F(VerifierTest, AServerThatIsNotThereIsToldApart) {
    const Verification result = verify({.url = "https://127.0.0.1:1/d", .bootstrappers = {"14"}});
    EXPECT_FALSE(result.fetched);
    EXPECT_FALSE(result.isAccepted());
}

TEST_F(VerifierTest, AnEngineThatCannotBeFetchedIsToldApart) {
    FileDownloadInfo info = vendor_.publishEngine(kEngine, "");
    info.URL = "https://127.0.0.1:1/engine";
    vendor_.describe(info);
    const Verification result = verification();
    EXPECT_FALSE(result.fetched);
    EXPECT_TRUE(result.description.has_value());
}

TEST_F(VerifierTest, ReportsToProgramsWhatItReportsToPeople) {
    const FileDownloadInfo info = vendor_.publishEngine(kEngine, "xor");
    const Verification result = verification({"14.0.0", "15"});
    const auto report = nlohmann::json::parse(verificationJson(result));
    EXPECT_EQ(report.at("accepted"), false);
    EXPECT_EQ(report.at("acceptedMajorVersion"), "14");
    EXPECT_EQ(report.at("fetched"), true);
    EXPECT_EQ(report.at("findings").size(), result.findings.size());
    EXPECT_EQ(report.at("findings").at(0).at("verdict"), "ok");
    EXPECT_EQ(report.at("bootstrappers").at(0).at("accepts"), true);
    EXPECT_EQ(report.at("bootstrappers").at(1).at("accepts"), false);
    EXPECT_EQ(report.at("description").at("Checksum"), info.Checksum);
    const std::string text = verificationText(result);
    EXPECT_NE(text.find("\nbootstrapper 14.0.0: accepts it\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\nbootstrapper 15: does not accept it, its major"), std::string::npos) << text;
}

TEST_F(VerifierTest, TellsHowMuchHasBeenFetched) {
    vendor_.publishEngine(kEngine, "");
    Progress last;
    verify({.url = vendor_.origin() + kDescription, .bootstrappers = {"14"}},
           [&last](const Progress& progress) {
               if (progress.done) {
                   last = progress;
               }
           });
    EXPECT_EQ(last.done, kEngine.size());
    EXPECT_EQ(last.total, kEngine.size());
}

std::string failureOf(const std::vector<std::string>& arguments) {
    try {
        parseVerifyOptions(arguments);
    } catch (const ToolError& error) {
        EXPECT_EQ(error.status(), ExitStatus::usage);
        return error.what();
    }
    return "no failure";
}

TEST(VerifyOptionsTest, AnswerForThisBuildUnlessToldOtherwise) {
    const VerifyOptions options = parseVerifyOptions({});
    EXPECT_TRUE(options.url.ends_with(kDescription)) << options.url;
    EXPECT_EQ(options.bootstrappers, std::vector<std::string>{"14.0.0"});
    EXPECT_EQ(options.authority, "");
    EXPECT_FALSE(options.json);
}

TEST(VerifyOptionsTest, AreRead) {
    const VerifyOptions options =
        parseVerifyOptions({"https://h.example/d", "--json", "--bootstrapper", "13.1", "--authority",
                            "ca.pem", "--bootstrapper", "14"});
    EXPECT_EQ(options.url, "https://h.example/d");
    EXPECT_EQ(options.bootstrappers, (std::vector<std::string>{"13.1", "14"}));
    EXPECT_EQ(options.authority, "ca.pem");
    EXPECT_TRUE(options.json);
}

TEST(VerifyOptionsTest, TakeARangeOfBootstrappersForItsEndsAndTheMajorVersionsBetween) {
    EXPECT_EQ(versionsInRange("13.4"), (std::vector<std::string>{"13.4"}));
    EXPECT_EQ(versionsInRange("14.0-14.9"), (std::vector<std::string>{"14.0", "14.9"}));
    EXPECT_EQ(versionsInRange("13.4-16.1"), (std::vector<std::string>{"13.4", "14", "15", "16.1"}));
    for (const char* range : {"14.2-14.1", "14-14", "1-102", "1-99999999999", "14-", "-14", "1-2-3"}) {
        EXPECT_NE(failureOf({"--bootstrapper", range}), "no failure") << range;
    }
    EXPECT_EQ(parseVerifyOptions({"--bootstrapper", "13-14"}).bootstrappers,
              (std::vector<std::string>{"13", "14"}));
}

TEST(VerifyOptionsTest, RefuseWhatIsNoHttpsAddressOrNoVersion) {
    EXPECT_EQ(failureOf({"http://h.example/d"}), "URL: must be an HTTPS URL, not \"http://h.example/d\"");
    EXPECT_EQ(failureOf({"https://h.example/a b"}),
              "URL: must be an HTTPS URL, not \"https://h.example/a b\"");
    EXPECT_EQ(failureOf({"--bootstrapper", "new"}),
              "--bootstrapper: must be a dotted version such as 14.2.7, not \"new\"");
}

} // namespace
} // namespace orvane::tools
