#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace orvane::demo {

/// What an engine is told on its command line by the program that starts it.
struct EngineArguments {
    std::int64_t ownerProcess = 0; ///< process identifier of the program that started the engine
    std::string owner;             ///< name of the service to report to
    std::string ownerName;
    std::string locale; ///< "fr-CH", "fr-ch" or "de-ch"
    std::int64_t step = 0;
    std::string dateTime;             ///< the time stamp of the run's log
    bool incomplete = false;          ///< always given; says that the owner follows the run
    std::vector<std::string> further; ///< everything else, in its order: the options the owner was given
};

class EngineArgumentError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads an argument vector without the program's own name. The six options that carry a value must each come
/// with one, "--owner", "--pid" and "--step" must be there; throws `EngineArgumentError` naming the first
/// that is wrong.
EngineArguments parseEngineArguments(const std::vector<std::string>& arguments);

} // namespace orvane::demo
