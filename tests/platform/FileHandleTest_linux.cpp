#include "platform/Files.h"

#include "tests/platform/ErrorExpectation.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <string_view>

namespace orvane::test {

namespace {

using platform::FileHandle;

TEST(DeviceFileTest, ReadsAFileWhoseLengthIsNotKnownBeforehand) {
    const Bytes contents = FileHandle::forReading("/proc/self/status").readToEnd();
    const std::string_view status = textOf(contents);
    EXPECT_EQ(status.substr(0, 5), "Name:");
    EXPECT_EQ(status.back(), '\n');
}

TEST(DeviceFileTest, AFullDiskIsAnError) {
    const FileHandle full = FileHandle::forWriting("/dev/full");
    expectError(ENOSPC, "/dev/full", [&] { full.write(bytesOf("more")); });
}

TEST(DeviceFileTest, AReadThatFailsIsAnErrorNamingTheFile) {
    // A process may open its own memory but not read where nothing is mapped.
    const FileHandle memory = FileHandle::forReading("/proc/self/mem");
    expectError(EIO, "/proc/self/mem", [&] { memory.readUpToCount(1); });
}

} // namespace

} // namespace orvane::test
