#include "demo/VendorServer.h"

#include "demo/Gzip.h"
#include "demo/RehearsalAuthorities.h"
#include "platform/BoundedRequest.h"
#include "tests/demo/TlsProbe.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <future>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <thread>

namespace orvane::demo {
namespace {

using namespace std::chrono_literals;
using test::contentsOf;
using test::writeFile;
using Outcome = ResultType<Bytes>;

constexpr char kDescription[] = "/downloadinstaller?os=darwin&product=varlen";
constexpr char kFile[] = "/varlen/setup/engine";

class VendorTest : public testing::Test {
protected:
    explicit VendorTest(CertificateFlaw flaw = CertificateFlaw::none) {
        server_ = std::make_unique<VendorServer>(
            VendorOptions{.folder = folder(), .hosts = {}, .certificateFlaw = flaw});
        origin_ = server_->origin();
        trustAuthoritiesIn(folder() / "ca.pem");
        writeFile(folder() / "published/engine", engine_);
    }

    std::filesystem::path folder() const { return folder_.path(); }

    Outcome get(const std::string& target) { return request({.url = origin_ + target}); }

    Outcome request(const platform::UrlRequest& request) { return performRequest(request, 60s); }

    std::string bodyOf(const std::string& target) {
        const Outcome outcome = get(target);
        const platform::Error* const error = errorOf(outcome);
        EXPECT_FALSE(error) << error->localizedDescription();
        return error == nullptr ? std::string(textOf(std::get<Bytes>(outcome))) : std::string();
    }

    Outcome getWithFault(const std::string& fault) {
        writeFile(folder() / "faults.json", "{\"" + std::string(kFile) + "\": " + fault + "}");
        return get(kFile);
    }

    void expectBody(const std::string& fault, const std::string& body) {
        const Outcome outcome = getWithFault(fault);
        const platform::Error* const error = errorOf(outcome);
        ASSERT_FALSE(error) << fault << ": " << error->localizedDescription();
        EXPECT_EQ(textOf(std::get<Bytes>(outcome)), body) << fault;
    }

    void expectWhole(const std::string& fault) { expectBody(fault, engine_); }

    void expectCut(const std::string& fault) { EXPECT_TRUE(errorOf(getWithFault(fault))) << fault; }

    std::vector<std::string> targetsIn(const std::string& log) const {
        std::vector<std::string> targets;
        std::ifstream stream(folder() / log);
        for (std::string line; std::getline(stream, line);) {
            targets.push_back(nlohmann::json::parse(line)["target"]);
        }
        return targets;
    }

    bool metTheUnexpected() const { return std::filesystem::exists(folder() / "unexpected.log"); }

    const std::string engine_ = std::string(100'000, 'e') + "\r\n\xFF";
    std::unique_ptr<VendorServer> server_;
    std::string origin_;

private:
    test::TemporaryFolder folder_;
};

TEST_F(VendorTest, ServesTheDescriptionAndTheFilesOfItsFolder) {
    writeFile(folder() / "published/downloadinstaller.json", "{}");
    EXPECT_EQ(bodyOf(kDescription), "{}");
    EXPECT_EQ(bodyOf(kFile), engine_);
    EXPECT_EQ(targetsIn("requests.log"), (std::vector<std::string>{kDescription, kFile}));
    EXPECT_FALSE(metTheUnexpected());
}

TEST_F(VendorTest, SendsALargeFileWhole) {
    const std::string large(48U << 20U, 'l');
    writeFile(folder() / "published/large", large);
    EXPECT_TRUE(bodyOf("/varlen/setup/large") == large);
}

TEST_F(VendorTest, RefusesAndNotesEveryOtherRequest) {
    writeFile(folder() / "published/downloadinstaller.json", "{}");
    writeFile(folder() / "published/sub/file", "x");
    const std::vector<std::string> targets{"/downloadinstaller",
                                           "/downloadinstaller?os=linux&product=varlen",
                                           std::string(kDescription) + "&x=1",
                                           "/varlen/setup/missing",
                                           "/varlen/setup/sub",
                                           "/varlen/setup/",
                                           "/engine",
                                           "/varlen/setup/engine?x"};
    for (const std::string& target : targets) {
        EXPECT_EQ(bodyOf(target), "<html><body><h1>404</h1></body></html>\n") << target;
    }
    EXPECT_EQ(targetsIn("unexpected.log"), targets);
}

TEST_F(VendorTest, ServesTheFilesOfSubfolders) {
    writeFile(folder() / "published/14.2.7/varlen-setup.enc", "x");
    EXPECT_EQ(bodyOf("/varlen/setup/14.2.7/varlen-setup.enc"), "x");
    EXPECT_TRUE(targetsIn("unexpected.log").empty());
}

TEST_F(VendorTest, RefusesOtherMethods) {
    request({.url = origin_ + kFile, .httpMethod = "DELETE"});
    request({.url = origin_ + kFile, .httpMethod = "POST", .httpBody = "x"});
    EXPECT_EQ(targetsIn("unexpected.log").size(), 2U);
}

constexpr char kReport[] = R"({"Product": "varlen", "Report": "YWJj", "OS": "darwin", )"
                           R"("SoftwareName": "bootstrapper", "SoftwareVersion": "0.1.0"})";

TEST_F(VendorTest, KeepsCrashReports) {
    const platform::UrlRequest post{.url = origin_ + "/crashreport",
                                    .httpMethod = "POST",
                                    .httpHeaderFields = {{"Content-Type", "application/json"}},
                                    .httpBody = kReport};
    EXPECT_FALSE(errorOf(request(post)));
    EXPECT_EQ(contentsOf(folder() / "reports/001.json"), kReport);
    EXPECT_EQ(contentsOf(folder() / "reports/001.log"), "abc");
    EXPECT_FALSE(metTheUnexpected());
}

TEST_F(VendorTest, NotesACrashReportOfAnotherTypeOrForm) {
    request({.url = origin_ + "/crashreport", .httpMethod = "POST", .httpBody = kReport});
    request({.url = origin_ + "/crashreport",
             .httpMethod = "POST",
             .httpHeaderFields = {{"Content-Type", "application/json"}},
             .httpBody = "{}"});
    EXPECT_EQ(targetsIn("unexpected.log"), (std::vector<std::string>{"/crashreport", "/crashreport"}));
    EXPECT_TRUE(std::filesystem::is_empty(folder() / "reports"));
}

TEST_F(VendorTest, FramesABodyAsItIsTold) {
    expectWhole(R"({"framing": "chunked"})");
    expectWhole(R"({"framing": "until-close"})");
    expectWhole(R"({"gzip": true})");
    expectWhole(R"({"status": 503})");
    expectWhole(R"({"bytesPerSecond": 100000000})");
    EXPECT_FALSE(metTheUnexpected());
}

TEST_F(VendorTest, CutsABodyAsItIsTold) {
    expectCut(R"({"dropAfterBytes": 0})");
    expectCut(R"({"dropAfterBytes": 70000})");
    expectCut(R"({"framing": "chunked", "dropAfterBytes": 70000})");
    expectCut(R"({"contentLength": 200000})");
    EXPECT_EQ(std::get<Bytes>(getWithFault(R"({"contentLength": 70000})")).size(), 70000U);
    EXPECT_FALSE(metTheUnexpected());
}

TEST_F(VendorTest, SendsAPageInPlaceOfAFile) {
    EXPECT_EQ(textOf(std::get<Bytes>(getWithFault(R"({"page": "<p>Log in</p>"})"))), "<p>Log in</p>");
}

TEST_F(VendorTest, SendsBlanksBeforeTheBody) {
    expectBody(R"({"blanks": 3})", "   " + engine_);
    expectBody(R"({"blanks": 70000, "framing": "chunked"})", std::string(70'000, ' ') + engine_);
    expectBody(R"({"blanks": 2, "page": ""})", "  ");
    expectCut(R"({"blanks": 10, "dropAfterBytes": 5})");
}

TEST_F(VendorTest, SendsFurtherHeaders) {
    writeFile(folder() / "published/engine", gzipped(engine_));
    expectBody(R"({"headers": {"Content-Encoding": "gzip"}})", engine_);
}

TEST_F(VendorTest, RedirectsElsewhere) {
    writeFile(folder() / "published/other", "other");
    EXPECT_EQ(textOf(std::get<Bytes>(getWithFault("{\"redirect\": \"" + origin_ + "/varlen/setup/other\"}"))),
              "other");
    EXPECT_FALSE(metTheUnexpected());
}

TEST_F(VendorTest, StallsUntilItIsReleased) {
    auto outcome =
        std::async(std::launch::async, [this] { return getWithFault(R"({"stallAfterBytes": 70000})"); });
    EXPECT_EQ(outcome.wait_for(300ms), std::future_status::timeout);
    writeFile(folder() / "release", "");
    EXPECT_EQ(textOf(std::get<Bytes>(outcome.get())), engine_);
}

TEST_F(VendorTest, HoldsItsResponseUntilItIsReleased) {
    auto outcome = std::async(std::launch::async, [this] { return getWithFault(R"({"hold": true})"); });
    EXPECT_EQ(outcome.wait_for(300ms), std::future_status::timeout);
    writeFile(folder() / "release", "");
    EXPECT_EQ(textOf(std::get<Bytes>(outcome.get())), engine_);
}

TEST_F(VendorTest, StopsInTheMidstOfAStall) {
    auto outcome =
        std::async(std::launch::async, [this] { return getWithFault(R"({"stallAfterBytes": 70000})"); });
    while (targetsIn("requests.log").empty()) {
        std::this_thread::yield();
    }
    server_.reset();
    EXPECT_TRUE(errorOf(outcome.get()));
}

TEST_F(VendorTest, ServesOverIpv6) {
    test::TemporaryFolder other;
    const VendorServer vendor({.folder = other.path(), .address = "::1", .hosts = {}});
    EXPECT_EQ(vendor.origin(), "https://[::1]:" + std::to_string(vendor.port()));
    trustAuthoritiesIn(other.path() / "ca.pem");
    writeFile(other.path() / "published/engine", "engine");
    EXPECT_EQ(textOf(std::get<Bytes>(request({.url = vendor.origin() + kFile}))), "engine");
}

TEST_F(VendorTest, SpeaksNothingButOldTlsWhenItIsTold) {
    test::TemporaryFolder other;
    const VendorServer vendor({.folder = other.path(), .hosts = {}, .oldTls = true});
    EXPECT_TRUE(test::speaks(vendor.port(), test::TlsVersion::tls11));
    EXPECT_FALSE(test::speaks(vendor.port(), test::TlsVersion::tls12));
    EXPECT_TRUE(test::speaks(server_->port(), test::TlsVersion::tls12));
}

TEST_F(VendorTest, AnswersNothingWhileItsFaultsCannotBeRead) {
    getWithFault(R"({"mood": "bad"})");
    EXPECT_EQ(targetsIn("unexpected.log"), std::vector<std::string>{kFile});
}

TEST_F(VendorTest, KeepsItsKeyToItself) {
    struct stat status {};
    ASSERT_EQ(stat((folder() / "server-key.pem").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(VendorTest, CannotListenWhereAnotherDoes) {
    const test::TemporaryFolder other;
    EXPECT_THROW(VendorServer({.folder = other.path(), .port = server_->port(), .hosts = {}}),
                 std::runtime_error);
}

/// Each flaw of a certificate keeps a client from sending anything.
class FlawedVendorTest : public VendorTest, public testing::WithParamInterface<CertificateFlaw> {
protected:
    FlawedVendorTest() : VendorTest(GetParam()) {}
};

TEST_P(FlawedVendorTest, IsNotBelieved) {
    EXPECT_TRUE(errorOf(get(kFile)));
    EXPECT_TRUE(targetsIn("requests.log").empty());
}

std::string nameOf(const testing::TestParamInfo<CertificateFlaw>& info) {
    return info.param == CertificateFlaw::wrongHost ? "WrongHost"
           : info.param == CertificateFlaw::expired ? "Expired"
                                                    : "SelfSigned";
}

INSTANTIATE_TEST_SUITE_P(Vendor, FlawedVendorTest,
                         testing::Values(CertificateFlaw::wrongHost, CertificateFlaw::expired,
                                         CertificateFlaw::selfSigned),
                         nameOf);

} // namespace
} // namespace orvane::demo
