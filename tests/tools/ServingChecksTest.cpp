#include "tools/ServingChecks.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

using namespace std::chrono_literals;

const std::chrono::system_clock::time_point kNow{std::chrono::sys_days{std::chrono::year{2026} / 11 / 21}};

HttpAnswer goodEngine() {
    return {.url = "https://h.example/s/14.2.7/engine.enc",
            .status = 200,
            .headers = {{"cache-control", "public, max-age=31536000, immutable"}, {"content-length", "5"}},
            .beginning = "abc",
            .certificateEnd = kNow + std::chrono::days(14)};
}

Finding engineFinding(const std::string& check, const HttpAnswer& answer) {
    for (const Finding& finding : checkEngineServing(answer, "14.2.7", kNow)) {
        if (finding.check == check) {
            return finding;
        }
    }
    return {};
}

Verdict descriptionVerdict(const std::string& check, const HttpAnswer& answer) {
    for (const Finding& finding : checkDescriptionServing(answer, kNow)) {
        if (finding.check == check) {
            return finding.verdict;
        }
    }
    return Verdict::failed;
}

TEST(ServingChecksTest, AcceptWhatTheGuideConfigures) {
    for (const Finding& finding : checkEngineServing(goodEngine(), "14.2.7", kNow)) {
        EXPECT_EQ(finding.verdict, Verdict::good) << finding.text;
    }
    EXPECT_EQ(engineFinding("engine-certificate", goodEngine()).text,
              "h.example: valid for 14 more days, until 2026-12-05");
}

TEST(ServingChecksTest, WarnWhenACertificateEndsWithinTwoWeeks) {
    HttpAnswer answer = goodEngine();
    answer.certificateEnd = kNow + std::chrono::days(14) - 1s;
    const Finding finding = engineFinding("engine-certificate", answer);
    EXPECT_EQ(finding.verdict, Verdict::warning);
    EXPECT_NE(finding.text.find("valid for 13 more days, until 2026-12-04; renew it now"), std::string::npos);
    answer.certificateEnd.reset();
    EXPECT_EQ(engineFinding("engine-certificate", answer).verdict, Verdict::warning);
}

TEST(ServingChecksTest, WarnWhenADeliveryNetworkWouldKeepNoEngine) {
    for (const char* cache : {"no-store", "private, max-age=60", "no-cache", "max-age=0", "", "public"}) {
        HttpAnswer answer = goodEngine();
        answer.headers["cache-control"] = cache;
        EXPECT_EQ(engineFinding("engine-cache", answer).verdict, Verdict::warning) << cache;
    }
    HttpAnswer answer = goodEngine();
    answer.url = "https://h.example/s/engine.enc";
    EXPECT_EQ(engineFinding("engine-cache", answer).verdict, Verdict::warning);
}

TEST(ServingChecksTest, WarnWhenADeliveryNetworkWouldKeepTheDescription) {
    HttpAnswer answer = goodEngine();
    EXPECT_EQ(descriptionVerdict("description-cache", answer), Verdict::warning);
    answer.headers.clear();
    EXPECT_EQ(descriptionVerdict("description-cache", answer), Verdict::warning);
    answer.headers["cache-control"] = "no-store";
    EXPECT_EQ(descriptionVerdict("description-cache", answer), Verdict::good);
}

TEST(ServingChecksTest, WarnOfAStatusThatBootstrappersIgnore) {
    HttpAnswer answer = goodEngine();
    answer.status = 206;
    EXPECT_EQ(descriptionVerdict("description-status", answer), Verdict::warning);
    EXPECT_EQ(engineFinding("engine-status", answer).verdict, Verdict::warning);
}

TEST(ServingChecksTest, WarnOfABodyWithoutALength) {
    HttpAnswer answer = goodEngine();
    answer.headers["content-encoding"] = "gzip";
    EXPECT_EQ(engineFinding("engine-length", answer).verdict, Verdict::warning);
    answer = goodEngine();
    answer.headers.erase("content-length");
    EXPECT_EQ(engineFinding("engine-length", answer).verdict, Verdict::warning);
}

TEST(ServingChecksTest, NameTheStatusAndTheFirstLineOfAnUnexpectedAnswer) {
    HttpAnswer answer = goodEngine();
    answer.status = 404;
    answer.beginning = "<html>\x1b\r\n<body>";
    EXPECT_EQ(describeUnexpected(answer), "HTTP status 404, first line: <html>?");
    answer.beginning = std::string(121, 'a');
    EXPECT_EQ(describeUnexpected(answer), "HTTP status 404, first line: " + std::string(120, 'a') + "…");
    answer.beginning.clear();
    EXPECT_EQ(describeUnexpected(answer), "HTTP status 404, an empty body");
}

} // namespace
} // namespace orvane::tools
