#include "tools/CommandLine.h"

#include "tools/ToolError.h"

#include <algorithm>

namespace orvane::tools {
namespace {

bool contains(const std::vector<std::string_view>& names, std::string_view name) {
    return std::ranges::find(names, name) != names.end();
}

} // namespace

bool asksForHelp(const std::vector<std::string>& arguments) {
    const auto optionsEnd = std::ranges::find(arguments, "--");
    return std::any_of(arguments.begin(), optionsEnd,
                       [](const std::string& argument) { return argument == "--help" || argument == "-h"; });
}

void refuseUsage(const std::string& text) { throw ToolError(ExitStatus::usage, text); }

std::string checkedVersion(std::string_view option, const std::string& version) {
    const bool rightCharacters = version.find_first_not_of("0123456789.") == std::string::npos;
    if (!rightCharacters || version.starts_with('.') || version.ends_with('.') ||
        version.find("..") != std::string::npos) {
        refuseUsage(std::string(option) + " must be numbers separated by points, such as 14.2.7, not \"" +
                    version + "\"");
    }
    return version;
}

CommandLine::CommandLine(const std::vector<std::string>& arguments, const CommandLineGrammar& grammar) {
    std::size_t operands = 0;
    bool optionsEnded = false;
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        const std::string& name = *argument;
        if (!optionsEnded && name == "--") {
            optionsEnded = true;
        } else if (optionsEnded || !name.starts_with("--")) {
            if (operands == grammar.operands.size()) {
                refuseUsage("unexpected argument \"" + name + "\"");
            }
            take(grammar.operands[operands++], name, false);
        } else if (contains(grammar.flags, name)) {
            take(name, "", false);
        } else if (contains(grammar.options, name) || contains(grammar.listOptions, name)) {
            if (++argument == arguments.end() || argument->empty()) {
                refuseUsage(name + " needs a value");
            }
            take(name, *argument, contains(grammar.listOptions, name));
        } else {
            refuseUsage("unknown option " + name);
        }
    }
}

bool CommandLine::has(std::string_view flag) const { return values_.contains(flag); }

std::optional<std::string> CommandLine::value(std::string_view name) const {
    const auto found = values_.find(name);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

std::string CommandLine::required(std::string_view name) const {
    const auto found = value(name);
    const std::string subject = (name.starts_with("--") ? "" : "the ") + std::string(name);
    if (!found) {
        refuseUsage(subject + " is missing");
    }
    if (found->empty()) {
        refuseUsage(subject + " is empty");
    }
    return *found;
}

std::vector<std::string> CommandLine::values(std::string_view listOption) const {
    std::vector<std::string> found;
    const auto [begin, end] = values_.equal_range(listOption);
    std::transform(begin, end, std::back_inserter(found), [](const auto& entry) { return entry.second; });
    return found;
}

void CommandLine::take(std::string_view name, const std::string& value, bool repeatable) {
    if (!repeatable && has(name)) {
        refuseUsage(std::string(name) + " is given twice");
    }
    values_.emplace(name, value);
}

} // namespace orvane::tools
