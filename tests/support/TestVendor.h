#pragma once

#include "demo/VendorServer.h"
#include "model/FileDownloadInfo.h"
#include "tests/support/TemporaryFolder.h"

#include <string>
#include <vector>

namespace orvane::test {

/// A vendor on loopback that this process believes. At first it has nothing to describe. Any request that no
/// client should send fails the test.
class TestVendor {
public:
    TestVendor();
    ~TestVendor();
    TestVendor(const TestVendor&) = delete;
    TestVendor& operator=(const TestVendor&) = delete;

    /// "https://localhost:PORT"; the addresses of a deployment begin so.
    std::string origin() const;

    /// Offers an engine, plain or enciphered by "xor" or "pkg" (which leaves it as it is), and answers the
    /// description that is offered with it; `describe` it anew to change something.
    FileDownloadInfo publishEngine(const std::string& program, const std::string& encryptionAlgorithm);

    void describe(const FileDownloadInfo& info);
    void answerDescriptionWith(const std::string& body);

    /// See demo/VendorFaults.h for the form.
    void setFaults(const std::string& json);

    /// Lets stalled answers go on.
    void release();

    /// Path and query of each request so far.
    std::vector<std::string> requests() const;

    /// The log that each crash report so far carried.
    std::vector<std::string> reportedLogs() const;

private:
    TemporaryFolder folder_;
    demo::VendorServer server_;
};

} // namespace orvane::test
