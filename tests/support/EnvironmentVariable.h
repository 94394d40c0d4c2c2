#pragma once

#include <optional>
#include <string>

namespace orvane::test {

/// Sets a variable of this process's environment, or removes it, and puts the old state back when destroyed.
/// Not while other threads read the environment.
class EnvironmentVariable {
public:
    EnvironmentVariable(std::string name, const std::optional<std::string>& value);
    ~EnvironmentVariable();
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

private:
    std::string name_;
    std::optional<std::string> oldValue_;
};

} // namespace orvane::test
