#include "tests/support/EnvironmentVariable.h"

#include <cstdlib>
#include <utility>

namespace orvane::test {

namespace {

std::optional<std::string> read(const std::string& name) {
    const char* value = getenv(name.c_str());
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

void assign(const std::string& name, const std::optional<std::string>& value) {
    if (value) {
        setenv(name.c_str(), value->c_str(), 1);
    } else {
        unsetenv(name.c_str());
    }
}

} // namespace

EnvironmentVariable::EnvironmentVariable(std::string name, const std::optional<std::string>& value)
    : name_(std::move(name)), oldValue_(read(name_)) {
    assign(name_, value);
}

EnvironmentVariable::~EnvironmentVariable() { assign(name_, oldValue_); }

} // namespace orvane::test
