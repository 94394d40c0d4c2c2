#pragma once

#include "config/Deployment.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <string>

namespace orvane::test {

/// What a run takes as fixed, for one test: its paths lie in a folder of its own, its addresses lead to a
/// loopback server, its waits are short. Change `values` before the run begins.
class TestDeployment {
public:
    /// `serverRoot` begins every address, without a slash at its end: "https://localhost:4433". By default
    /// nobody answers there.
    explicit TestDeployment(const std::string& serverRoot = kNobody);

    const std::filesystem::path& folder() const { return folder_.path(); }

    /// Where the program looks for the engine. Neither the file nor its folder is there at first.
    std::filesystem::path engine() const;

    static constexpr char kNobody[] = "https://localhost:1";

private:
    TemporaryFolder folder_;

public:
    Deployment values;
};

} // namespace orvane::test
