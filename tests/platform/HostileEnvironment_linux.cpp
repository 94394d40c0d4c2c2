#include "tests/platform/HostileEnvironment_linux.h"

#include "platform/UrlSession.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <list>
#include <memory>

namespace orvane::test {

namespace {

/// A configuration under which no connection that the program may make could come about.
constexpr char kCripplingConfiguration[] = "openssl_conf = all\n"
                                           "[all]\n"
                                           "ssl_conf = connections\n"
                                           "[connections]\n"
                                           "system_default = limits\n"
                                           "[limits]\n"
                                           "MaxProtocol = TLSv1\n";

/// Every test of the program runs under variables that try to change whom sessions believe and who may
/// listen. They are set before the first session, since libraries look at some of them only once.
class HostileEnvironment : public testing::Environment {
public:
    static HostileEnvironment& shared() {
        static auto* const environment = new HostileEnvironment; // owned by GoogleTest
        return *environment;
    }

    void SetUp() override {
        folder_ = std::make_unique<TemporaryFolder>();
        writeFile(folder_->path() / "openssl.cnf", kCripplingConfiguration);
        variables_.emplace_back("OPENSSL_CONF", folder_->path() / "openssl.cnf");
        variables_.emplace_back("SSLKEYLOGFILE", keyLogFile());
        for (const char* proxy :
             {"https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY", "no_proxy", "NO_PROXY"}) {
            variables_.emplace_back(proxy, std::nullopt);
        }
        platform::UrlSession::create({}, {});
    }

    void TearDown() override {
        variables_.clear();
        folder_.reset();
    }

    std::filesystem::path keyLogFile() const { return folder_->path() / "keys.log"; }

private:
    std::unique_ptr<TemporaryFolder> folder_;
    std::list<EnvironmentVariable> variables_;
};

const testing::Environment* const registered =
    testing::AddGlobalTestEnvironment(&HostileEnvironment::shared());

} // namespace

std::filesystem::path keyLogFile() { return HostileEnvironment::shared().keyLogFile(); }

} // namespace orvane::test
