#include "demo/EngineArguments.h"

#include <charconv>
#include <map>

namespace orvane::demo {
namespace {

std::int64_t numberOf(const std::map<std::string, std::string>& values, const std::string& option) {
    const auto found = values.find(option);
    if (found == values.end()) {
        throw EngineArgumentError("missing option " + option);
    }
    const std::string& text = found->second;
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) {
        throw EngineArgumentError("option " + option + " needs a number, not \"" + text + "\"");
    }
    return number;
}

bool carriesValue(const std::string& option) {
    return option == "--pid" || option == "--owner" || option == "--ownerName" || option == "--locale" ||
           option == "--step" || option == "--datetime";
}

} // namespace

EngineArguments parseEngineArguments(const std::vector<std::string>& arguments) {
    EngineArguments parsed;
    std::map<std::string, std::string> values;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string& argument = arguments[index];
        // Options given to the owner follow the fixed ones; should one bear the same name, the first counts.
        if (argument == "--incomplete" && !parsed.incomplete) {
            parsed.incomplete = true;
        } else if (carriesValue(argument) && !values.contains(argument)) {
            if (index + 1 == arguments.size()) {
                throw EngineArgumentError("option " + argument + " needs a value");
            }
            values[argument] = arguments[++index];
        } else {
            parsed.further.push_back(argument);
        }
    }
    if (values["--owner"].empty()) {
        throw EngineArgumentError("missing option --owner");
    }
    parsed.ownerProcess = numberOf(values, "--pid");
    parsed.step = numberOf(values, "--step");
    parsed.owner = values["--owner"];
    parsed.ownerName = values["--ownerName"];
    parsed.locale = values["--locale"];
    parsed.dateTime = values["--datetime"];
    return parsed;
}

} // namespace orvane::demo
