#pragma once

#include "platform/Process.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace orvane::test {

class ProcessTest : public testing::Test {
protected:
    std::filesystem::path at(const std::string& name) const { return folder_.path() / name; }

private:
    const TemporaryFolder folder_;
};

/// A process of the shell that will run `script`, its further arguments being $1, $2 and so on.
std::unique_ptr<platform::Process> shell(const std::string& script,
                                         const std::vector<std::string>& arguments = {});

/// Launches and returns what the child writes.
std::string outputOf(platform::Process& process);

/// Launches and returns how the child ends.
int resultOf(platform::Process& process);

} // namespace orvane::test
