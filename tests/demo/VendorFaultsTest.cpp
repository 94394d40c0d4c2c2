#include "demo/VendorFaults.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace orvane::demo {
namespace {

using namespace std::chrono_literals;

std::map<std::string, VendorFault> faultsIn(const std::string& text) {
    const test::TemporaryFolder folder;
    test::writeFile(folder.path() / "faults.json", text);
    return readVendorFaults(folder.path() / "faults.json");
}

TEST(VendorFaultsTest, AreNoneWithoutAFile) {
    EXPECT_TRUE(readVendorFaults("/nonexistent/faults.json").empty());
}

TEST(VendorFaultsTest, AreReadForEachPath) {
    const auto faults = faultsIn(R"({"/a": {"status": 503, "delaySeconds": 1.5, "page": "p", "redirect": "r",
        "framing": "chunked", "contentLength": 1, "gzip": true, "dropAfterBytes": 2, "stallAfterBytes": 3,
        "bytesPerSecond": 4, "blanks": 5, "headers": {"X-Cache": "stale"}, "hold": true}, "/b": {"framing": "until-close"}, "/c": {}})");
    ASSERT_EQ(faults.size(), 3U);
    const VendorFault& fault = faults.at("/a");
    EXPECT_EQ(fault.status, 503);
    EXPECT_EQ(fault.delaySeconds, 1500ms);
    EXPECT_EQ(fault.page, "p");
    EXPECT_EQ(fault.redirect, "r");
    EXPECT_EQ(fault.framing, BodyFraming::chunked);
    EXPECT_EQ(fault.contentLength, 1U);
    EXPECT_TRUE(fault.gzip);
    EXPECT_EQ(fault.dropAfterBytes, 2U);
    EXPECT_EQ(fault.stallAfterBytes, 3U);
    EXPECT_EQ(fault.bytesPerSecond, 4U);
    EXPECT_EQ(fault.blanks, 5U);
    EXPECT_EQ(fault.headers, (std::map<std::string, std::string>{{"X-Cache", "stale"}}));
    EXPECT_TRUE(fault.hold);
    EXPECT_EQ(faults.at("/b").framing, BodyFraming::untilClose);
    EXPECT_EQ(faults.at("/c").framing, BodyFraming::contentLength);
    EXPECT_EQ(faults.at("/c").status, std::nullopt);
}

TEST(VendorFaultsTest, OfAnUnknownKindOrFormAreRefused) {
    EXPECT_THROW(faultsIn(R"({"/a": {"mood": 1}})"), VendorFaultError);
    EXPECT_THROW(faultsIn(R"({"/a": {"framing": "loose"}})"), VendorFaultError);
    EXPECT_THROW(faultsIn(R"({"/a": {"status": "503"}})"), VendorFaultError);
    EXPECT_THROW(faultsIn(R"({"/a": {"headers": "X-Cache: stale"}})"), VendorFaultError);
    EXPECT_THROW(faultsIn(R"({"/a": 1})"), VendorFaultError);
    EXPECT_THROW(faultsIn("[]"), VendorFaultError);
    EXPECT_THROW(faultsIn("{"), VendorFaultError);
}

} // namespace
} // namespace orvane::demo
