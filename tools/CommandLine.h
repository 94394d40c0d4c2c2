#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::tools {

/// What may stand on a tool's command line.
struct CommandLineGrammar {
    std::vector<std::string_view> options;     ///< "--name", followed by a value, at most once
    std::vector<std::string_view> listOptions; ///< likewise, as often as wanted
    std::vector<std::string_view> flags;       ///< "--name" alone
    std::vector<std::string_view> operands;    ///< what stands without a name, in its order
};

/// A command line taken apart. Everything after "--" is an operand. Whatever the grammar does not know is
/// refused: all throw `ToolError` with the status for a usage error.
class CommandLine {
public:
    /// `arguments` without the program's name.
    CommandLine(const std::vector<std::string>& arguments, const CommandLineGrammar& grammar);

    bool has(std::string_view flag) const;

    /// Of an option or an operand, by its name in the grammar.
    std::optional<std::string> value(std::string_view name) const;
    std::string required(std::string_view name) const; ///< neither missing nor, for an operand, empty
    std::vector<std::string> values(std::string_view listOption) const;

private:
    void take(std::string_view name, const std::string& value, bool repeatable);

    std::multimap<std::string, std::string, std::less<>> values_;
};

/// Whether "--help" or "-h" stands among the options, whatever else is wrong with them.
bool asksForHelp(const std::vector<std::string>& arguments);

/// For the usage errors that a single tool finds.
[[noreturn]] void refuseUsage(const std::string& text);

/// The value of an option that must be numbers separated by points.
std::string checkedVersion(std::string_view option, const std::string& version);

} // namespace orvane::tools
