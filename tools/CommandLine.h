#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace orvane::tools {

using Arguments = std::vector<std::string>;

/// The objection to an option's value, or an empty text.
std::string checkNotEmpty(const std::string& value);

/// The command line of a tool, or of one of a tool's commands: CLI11 with the habits that all tools share.
///
/// -h and --help print the same help, an option that takes one value may be given once, and no option may be
/// empty. What follows "--" is an operand, also when it begins with a hyphen.
class CommandLine : public CLI::App {
public:
    /// `name` as it is typed, such as "orvane-publish verify"; `statuses` lists what each exit status means.
    CommandLine(const std::string& name, const std::string& description, const std::string& statuses);

    /// `valueName` as the help shows it, such as "FOLDER".
    template <class Value>
    CLI::Option* option(const std::string& name, Value& value, const std::string& valueName,
                        const std::string& description) {
        return add_option(name, value, description)->type_name(valueName)->check(checkNotEmpty);
    }

    /// May be given any number of times, with one value each.
    CLI::Option* listOption(const std::string& name, std::vector<std::string>& values,
                            const std::string& valueName, const std::string& description);

    /// `arguments` without the program's name. Throws `ToolError` with the status for a usage error, or
    /// `HelpRequest`.
    void read(Arguments arguments);
};

/// The command line asked for help; the text is to be printed on standard output.
class HelpRequest : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// For usage errors that concern more than one option.
[[noreturn]] void refuseUsage(const std::string& text);

/// The main function of a tool: calls `run` with the arguments after the program's name and answers the exit
/// status. Prints help on standard output and failures on standard error, and fails when standard output
/// cannot be written.
int runTool(const std::string& name, int argumentCount, char** arguments,
            const std::function<int(const Arguments&)>& run);

} // namespace orvane::tools
